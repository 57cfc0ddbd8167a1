#pragma once

#include <QGridLayout>
#include <QPropertyAnimation>
#include <QToolButton>
#include <QWidget>

namespace Velmora {

/// A titled section of a form that opens and closes, at first closed. It is filled with `addWidget` and completed,
/// once, with `finalize`, which takes the height that it opens to; a change of style brings another. What is in a
/// closed section cannot get the focus.
class FoldWidget : public QWidget {
    Q_OBJECT

public:
    FoldWidget(const QString& title, QWidget* parent);
    ~FoldWidget() override;

    /// Place a field in the section's grid; the widget becomes a child of the section when it is finalized.
    void addWidget(QWidget* widget, int row, int column, Qt::Alignment alignment = {});
    void addWidget(QWidget* widget, int row, int column, int rowSpan, int columnSpan, Qt::Alignment alignment = {});
    void setColumnStretch(int column, int stretch);
    void setColumnMinimumWidth(int column, int width);

    /// Installs the fields and takes the animation setting and the section's height as they are now.
    void finalize();
    /// Shows the fields.
    void open();
    bool isOpen() const { return _toggle->isChecked(); }

Q_SIGNALS:
    /// The section has its height, and what lies around it is laid out.
    void opened();

public Q_SLOTS:
    void onTogglePressed(bool checked);

protected:
    void changeEvent(QEvent* event) override;
    /// A click on the rule beside the title is one on the title.
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void measure();

    QGridLayout* const _contentLayout; // the body's after `finalize`
    QToolButton* _toggle = nullptr;
    QWidget* _body = nullptr;
    QPropertyAnimation _animation;
    bool _isMeasured = false; ///< The end of the animation is the height of the fields in the present style.
};

} // namespace Velmora
