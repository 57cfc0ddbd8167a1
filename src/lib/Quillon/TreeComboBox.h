#pragma once

#include <QComboBox>

namespace Quillon {

/// A combo box whose popup is a tree: items that have children are shown below one another, without a header.
class TreeComboBox : public QComboBox {
    Q_OBJECT

public:
    explicit TreeComboBox(QWidget* parent = nullptr);

    /// Opens the popup with every branch open.
    void showPopup() override;
};

} // namespace Quillon
