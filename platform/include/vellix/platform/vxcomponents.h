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
/// What libvxcomponents offers.
namespace components {

/// Reads documents from files.
class Q_DECL_EXPORT VariantLoader
{
public:
    /// The document of a JSON file: objects as QVariantMap, arrays as QVariantList, whole numbers as
    /// qlonglong, other numbers as double. Path prefixes are expanded here. Fails with "PATH: REASON" for
    /// what cannot be read or is no regular file, and with "PATH:LINE:COLUMN: REASON" for what is not JSON.
    static Either<Error, QVariant> loadJson(const QString &fileName);
};

/// A read-only list model over a count and an item function. The display role (0) of row `r` is
/// `item(r)`; there are no other roles.
class Q_DECL_EXPORT ReadonlyLazyListModel : public QAbstractListModel
{
    Q_OBJECT

public:
    /// Both functions are called whenever the model is asked, never before. An empty `count` means no rows, an
    /// empty `item` invalid data.
    ReadonlyLazyListModel(const std::function<int()> &count, const std::function<QVariant(int)> &item,
                          QObject *parent = nullptr);

    /// What `count` says; no row has children.
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    /// What `item` says of the row; an invalid variant for any other role and for an index that is not there.
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    /// The one role, named "display".
    QHash<int, QByteArray> roleNames() const override;

private:
    std::function<int()> m_count;
    std::function<QVariant(int)> m_item;
};

/// A list that its producer computes at the first use. The model made of it reads this very object
/// and must not outlive it.
template <class T>
class ReadonlyLazyList
{
public:
    /// Makes the list when it is first asked for.
    using Producer = std::function<QList<T>()>;

    /// Without a producer the list is empty. Implicit, so that a function fits where a list is wanted.
    ReadonlyLazyList(const Producer &producer = Producer()) : m_producer(producer) {}

    /// A copy, computed or not as the other is. A model belongs to the list that it was made from: copies
    /// start without one.
    ReadonlyLazyList(const ReadonlyLazyList &other)
        : m_producer(other.m_producer), m_computed(other.m_computed), m_value(other.m_value)
    {
    }
    /// Takes over the other's producer and list. A model that was made here stays and reads the new list, without
    /// telling its views.
    ReadonlyLazyList &operator=(const ReadonlyLazyList &other)
    {
        m_producer = other.m_producer;
        m_computed = other.m_computed;
        m_value = other.m_value;
        return *this;
    }

    /// The list; computed now if it was not. Valid as long as this object is.
    const QList<T> &get() const
    {
        if (!m_computed) {
            if (m_producer)
                m_value = m_producer();
            m_computed = true;
        }
        return m_value;
    }

    /// The one model of this list, made at the first call as a child of `parent`. The list is
    /// computed at the model's first row count. Deleted models are made again.
    ReadonlyLazyListModel *acquireModel(QObject *parent = nullptr) const
    {
        if (!m_model) {
            m_model = new ReadonlyLazyListModel([this] { return get().size(); },
                                                [this](int i) { return QVariant::fromValue(get().at(i)); }, parent);
        }
        return m_model;
    }

    /// A list of what `f` makes of every element, null ones included. Computed at once.
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

/// Files that others change.
namespace fs {
/// Calls `callback` from the event loop whenever the content of the file at `path` (no prefix) has
/// changed: written, replaced, deleted or made again, through links, in directories that do not exist
/// yet, and by file systems that are mounted or unmounted. Writing the same bytes again is no change.
/// The returned object is a child of `context`; deleting either ends the watch. All watches of a process
/// belong in one thread, whose event loop serves them.
Q_DECL_EXPORT QObject *__watchFileChange(const QString &path, QObject *context, const std::function<void()> &callback);
}

}
}
