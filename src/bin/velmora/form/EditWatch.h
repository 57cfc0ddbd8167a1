#pragma once

#include <QObject>
#include <QPersistentModelIndex>

QT_BEGIN_NAMESPACE
class QAbstractItemModel;
class QWidget;
QT_END_NAMESPACE

namespace Velmora {

/// Tells when a field or a cell gets another value, whoever gives it.
class EditWatch : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// The editor of a field or a table as a whole.
    void add(const QWidget* editor);
    /// A cell; every cell for an invalid index.
    void add(const QAbstractItemModel* model, const QPersistentModelIndex& cell = {});

Q_SIGNALS:
    void edited();
};

} // namespace Velmora
