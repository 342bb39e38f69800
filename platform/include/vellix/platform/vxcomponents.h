#pragma once

#include <vellix/either.h>

#include <QAbstractListModel>
#include <QList>
#include <QPointer>
#include <QString>
#include <QVariant>

#include <functional>

/// @file
/// libvxcomponents: JSON files, lazy lists and their model, and the file watch.

namespace vellix {
/// The components of libvxcomponents.
namespace components {

/// Reads documents from files.
class Q_DECL_EXPORT VariantLoader
{
public:
    /// The document of a JSON file: objects as QVariantMap, lists as QVariantList, whole numbers as qlonglong, other
    /// numbers as double. Expands path prefixes. Fails with "PATH: REASON" if the file cannot be read or is not a
    /// regular file, and with "PATH:LINE:COLUMN: REASON", counted from 1, if it is not JSON.
    static Either<Error, QVariant> loadJson(const QString &fileName);
};

/// A read-only list model on two functions, `count` and `item`. The display role (0) of row `r` is `item(r)`. There are
/// no other roles.
class Q_DECL_EXPORT ReadonlyLazyListModel : public QAbstractListModel
{
    Q_OBJECT

public:
    /// The functions are called only when the model is queried. Without `count` there are no rows; without `item` the
    /// data are invalid.
    ReadonlyLazyListModel(const std::function<int()> &count, const std::function<QVariant(int)> &item,
                          QObject *parent = nullptr);

    /// The result of `count`. Rows have no children.
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    /// The result of `item` for the row. An invalid variant for any other role and for an invalid index.
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    /// The only role, named "display".
    QHash<int, QByteArray> roleNames() const override;

private:
    std::function<int()> m_count;
    std::function<QVariant(int)> m_item;
};

/// A list that its producer computes at the first use. Its model reads this object and must not outlive it.
template <class T>
class ReadonlyLazyList
{
public:
    /// Computes the list.
    using Producer = std::function<QList<T>()>;

    /// Without a producer the list is empty. Implicit, so that a function can be passed as a list.
    ReadonlyLazyList(const Producer &producer = Producer()) : m_producer(producer) {}

    /// Copies the producer and the list, if computed, but not the model: a model belongs to the list it was made
    /// from.
    ReadonlyLazyList(const ReadonlyLazyList &other)
        : m_producer(other.m_producer), m_computed(other.m_computed), m_value(other.m_value)
    {
    }
    /// Copies the producer and the list. The model of this list, if any, stays and reads the new list; it does not
    /// notify its views.
    ReadonlyLazyList &operator=(const ReadonlyLazyList &other)
    {
        m_producer = other.m_producer;
        m_computed = other.m_computed;
        m_value = other.m_value;
        return *this;
    }

    /// The list, computed at the first call. Valid as long as this object.
    const QList<T> &get() const
    {
        if (!m_computed) {
            if (m_producer)
                m_value = m_producer();
            m_computed = true;
        }
        return m_value;
    }

    /// The model of this list, created at the first call as a child of `parent`; later calls ignore `parent`. The
    /// model's first row count computes the list. If the model was deleted, the next call creates a new one.
    ReadonlyLazyListModel *acquireModel(QObject *parent = nullptr) const
    {
        if (!m_model) {
            m_model = new ReadonlyLazyListModel([this] { return get().size(); },
                                                [this](int i) { return QVariant::fromValue(get().at(i)); }, parent);
        }
        return m_model;
    }

    /// Applies `f` to every element, null ones included. Computed immediately.
    template <class U>
    ReadonlyLazyList<U> map(const std::function<U(const T &)> &f) const
    {
        QList<U> mapped;
        mapped.reserve(get().size());
        for (const T &element : get())
            mapped.append(f(element));
        return ReadonlyLazyList<U>([mapped] { return mapped; });
    }

private:
    Producer m_producer;
    mutable QPointer<ReadonlyLazyListModel> m_model;
    mutable bool m_computed = false;
    mutable QList<T> m_value;
};

/// Watches files that other programs change.
namespace fs {
/// Calls `callback` from the event loop whenever the content of the file at `path` (no prefix) has changed. The file
/// can be written, replaced, deleted or created again, also through links, in directories that do not exist yet, and by
/// a mount or unmount. Writing the same bytes again is not a change. The returned object is a child of `context`;
/// deleting either one ends the watch. Null if the file cannot be watched. All watches of a process must be in one
/// thread, whose event loop serves them.
Q_DECL_EXPORT QObject *__watchFileChange(const QString &path, QObject *context, const std::function<void()> &callback);
}

}
}
