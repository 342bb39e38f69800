#pragma once

#include <vellix/either.h>

#include <QAbstractListModel>
#include <QList>
#include <QPointer>
#include <QString>
#include <QVariant>

#include <functional>

// libvxcomponents: JSON files, lazy lists and their model, and the file watch.

namespace vellix {
namespace components {

class Q_DECL_EXPORT VariantLoader
{
public:
    /// The document of a JSON file: objects as QVariantMap, arrays as QVariantList, whole numbers as
    /// qlonglong. Path prefixes are expanded here. The error names the path and the reason; for a
    /// syntax error the line and the column as well.
    static Either<Error, QVariant> loadJson(const QString &fileName);
};

/// A read-only list model over a count and an item function. The display role (0) of row `r` is
/// `item(r)`; there are no other roles.
class Q_DECL_EXPORT ReadonlyLazyListModel : public QAbstractListModel
{
    Q_OBJECT

public:
    ReadonlyLazyListModel(const std::function<int()> &count, const std::function<QVariant(int)> &item,
                          QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
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
    using Producer = std::function<QList<T>()>;

    ReadonlyLazyList(const Producer &producer = Producer()) : m_producer(producer) {}

    // A model belongs to the list that it was made from: copies start without one.
    ReadonlyLazyList(const ReadonlyLazyList &other)
        : m_producer(other.m_producer), m_computed(other.m_computed), m_value(other.m_value)
    {
    }
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
    /// computed at the model's first row count.
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

namespace fs {
/// Calls `callback` from the event loop whenever the content of the file at `path` (no prefix) has
/// changed: written, replaced, deleted or made again, through links and in directories that do not
/// exist yet. Writing the same bytes again is no change. The returned object is a child of
/// `context`; deleting either ends the watch.
Q_DECL_EXPORT QObject *__watchFileChange(const QString &path, QObject *context, const std::function<void()> &callback);
}

}
}
