#include <velmora/form/FormArea.h>

namespace Velmora {

FormArea::FormArea(QWidget* form, QWidget* page) : QScrollArea(page), _form(form) {
    setWidgetResizable(true);
    setFocusPolicy(Qt::NoFocus); // Tab goes from field to field, and the form follows
    _form->setParent(page);
    _form->hide();
}

void FormArea::showEvent(QShowEvent* event) {
    if (!widget())
        setWidget(_form);
    QScrollArea::showEvent(event);
}

} // namespace Velmora
