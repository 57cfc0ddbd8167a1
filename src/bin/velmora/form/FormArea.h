#pragma once

#include <QScrollArea>

namespace Velmora {

/// Scrolls the configuration form of an IP's page.
class FormArea : public QScrollArea {
    Q_OBJECT

public:
    /// The form is taken in when the area is first shown, since laying it out takes longer than building it, and most
    /// forms are not looked at in a run. Until then it stays a hidden child of the page.
    FormArea(QWidget* form, QWidget* page);

protected:
    void showEvent(QShowEvent* event) override;

private:
    QWidget* const _form;
};

} // namespace Velmora
