#pragma once

#include <QScrollArea>

QT_BEGIN_NAMESPACE
class QBoxLayout;
class QLabel;
QT_END_NAMESPACE

namespace Velmora {

class EntitySymbol;
struct Preview;

/// What a preview tells without HDL: what is wrong, remarks, facts and, below or beside them as there is room, the
/// symbol of the entity.
class PreviewSheet : public QScrollArea {
    Q_OBJECT

public:
    explicit PreviewSheet(QWidget* parent);

    void setPreview(const Preview& preview);

    /// Room for the symbol beside the facts.
    QSize sizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void arrange();

    QBoxLayout* _layout;
    QLabel* _remarks;
    QLabel* _facts;
    EntitySymbol* _symbol;
};

} // namespace Velmora
