#pragma once

#include <vellix/platform/baseutil.h>

#include <QDebug>
#include <QString>

#include <boost/variant.hpp>

#include <cstdlib>
#include <functional>
#include <ostream>
#include <type_traits>
#include <utility>

/// @file
/// The result type of every parser and loader. An error is returned, never thrown.
///
///     Either<Error, int> parse(const QString &text)
///     {
///         if (text.isEmpty())
///             return Left(Error({"parser", __LINE__}, "nothing to parse"));
///         return Right(text.size());
///     }

namespace vellix {

/// Makes the left (error) side: `return Left(error);` converts to every Either with such a left side.
template <class T>
class Left
{
public:
    /// Takes the error; its type is deduced.
    explicit Left(T value) : m_value(std::move(value)) {}
    /// The error. Valid as long as this object.
    const T &value() const { return m_value; }
    /// Moves the error out.
    T take() { return std::move(m_value); }

private:
    T m_value;
};

/// Makes the right (result) side: `return Right(value);` converts to every Either with such a right side.
template <class T>
class Right
{
public:
    /// Takes the result; its type is deduced.
    explicit Right(T value) : m_value(std::move(value)) {}
    /// The result. Valid as long as this object.
    const T &value() const { return m_value; }
    /// Moves the result out.
    T take() { return std::move(m_value); }

private:
    T m_value;
};

/// @cond
namespace EitherPrivate {
// Programs that read logs match this place: it never changes, wherever the header is installed and however it grows.
constexpr const char *headerFile = "../../../common/include/vellix/either.h";
constexpr int getOrWarnLine = 162;
constexpr int getOrErrLine = 183;
}
/// @endcond

/// Holds either a left value (the error) or a right value (the result), never both.
template <class EL, class ER>
class Either
{
public:
    /// The error type, usually Error.
    using L = EL;
    /// The type of the result.
    using R = ER;

    /// Takes the left side. Implicit, so that a function can return a Left. The value may be of any type that converts
    /// to L.
    template <class T, class = std::enable_if_t<std::is_convertible_v<const T &, L>>>
    Either(const vellix::Left<T> &left) : m_side(vellix::Left<L>(left.value()))
    {
    }

    /// Takes the right side. Implicit, for the same reason.
    template <class T, class = std::enable_if_t<std::is_convertible_v<const T &, R>>>
    Either(const vellix::Right<T> &right) : m_side(vellix::Right<R>(right.value()))
    {
    }

    /// Moves the left side in.
    template <class T, class = std::enable_if_t<std::is_convertible_v<T &&, L>>>
    Either(vellix::Left<T> &&left) : m_side(vellix::Left<L>(left.take()))
    {
    }

    /// Moves the right side in.
    template <class T, class = std::enable_if_t<std::is_convertible_v<T &&, R>>>
    Either(vellix::Right<T> &&right) : m_side(vellix::Right<R>(right.take()))
    {
    }

    /// Whether there is an error, so that left() may be called.
    bool isLeft() const { return m_side.which() == 0; }
    /// Whether there is a result, so that right() may be called.
    bool isRight() const { return m_side.which() == 1; }

    /// The left value. Throws boost::bad_get if there is a right one. Valid as long as this object.
    const L &left() const { return boost::get<vellix::Left<L>>(m_side).value(); }
    /// The right value. Throws boost::bad_get if there is a left one. Valid as long as this object.
    const R &right() const { return boost::get<vellix::Right<R>>(m_side).value(); }

    /// Moves the right value out and leaves an empty one. Throws boost::bad_get if there is a left one.
    R take() { return boost::get<vellix::Right<R>>(m_side).take(); }

    /// Applies `f` to the right value. A left value is passed on, and `f` is not called.
    template <class F>
    auto map(const F &f) const -> Either<L, std::decay_t<std::invoke_result_t<const F &, const R &>>>
    {
        if (isLeft())
            return vellix::Left<L>(left());
        using U = std::decay_t<std::invoke_result_t<const F &, const R &>>;
        return vellix::Right<U>(std::invoke(f, right()));
    }

    /// Applies `f`, which returns an Either, to the right value. A left value is passed on, and `f` is not called.
    template <class F>
    auto flatMap(const F &f) const -> std::decay_t<std::invoke_result_t<const F &, const R &>>
    {
        if (isLeft())
            return vellix::Left<L>(left());
        return std::invoke(f, right());
    }

    /// Applies `f` to the left value. A right value is passed on, and `f` is not called.
    template <class F>
    auto mapLeft(const F &f) const -> Either<std::decay_t<std::invoke_result_t<const F &, const L &>>, R>
    {
        if (isRight())
            return vellix::Right<R>(right());
        using U = std::decay_t<std::invoke_result_t<const F &, const L &>>;
        return vellix::Left<U>(std::invoke(f, left()));
    }

    /// Returns the right value. Logs a left one as a warning and returns `fallback`.
    R getOrWarn(const R &fallback) const
    {
        if (isRight())
            return right();
        utilities::log::cb::warn(EitherPrivate::headerFile, EitherPrivate::getOrWarnLine, __PRETTY_FUNCTION__,
                                 expectedRight());
        return fallback;
    }

    /// Returns the right value. Logs a left one as an error, then calls `exit(-1)` if
    /// EitherPrivate::shouldExitOnError(), else returns `fallback`.
    R getOrErr(const R &fallback) const
    {
        if (isRight())
            return right();
        utilities::log::cb::error(EitherPrivate::headerFile, EitherPrivate::getOrErrLine, __PRETTY_FUNCTION__,
                                  expectedRight());
        return exitOr(fallback);
    }

    /// Like getOrErr(), but logs to Qt's log, as a critical message.
    R qGetOrErr(const R &fallback) const
    {
        if (isRight())
            return right();
        QMessageLogger(nullptr, 0, nullptr).critical() << "\033[31m"
                                                       << "[error] expected right but" << left() << "\033[0m";
        return exitOr(fallback);
    }

private:
    utilities::log::cb::Writer expectedRight() const
    {
        return [this](std::ostream &out) -> std::ostream & { return out << "expected right but " << left(); };
    }

    static R exitOr(const R &fallback)
    {
        if (EitherPrivate::shouldExitOnError())
            std::exit(-1);
        return fallback;
    }

    // The wrappers keep the sides apart even if both have the same type.
    boost::variant<vellix::Left<L>, vellix::Right<R>> m_side;
};

/// @cond
namespace EitherPrivate {
inline void printRecord(QDebug &out, const Error::err &record)
{
    out << QString::fromStdString(CodeLocation::toString(record.location.file, record.location.line)) << ": "
        << QString::fromStdString(record.message);
}
}
/// @endcond

/// Prints an error in red; a chain of causes as a list, first cause first.
inline QDebug &operator<<(QDebug &out, const Error &error)
{
    if (error.records.empty())
        return out << "\033[31m"
                   << "undefined error"
                   << "\033[0m";

    if (error.records.size() == 1) {
        out << "\033[31m";
        EitherPrivate::printRecord(out, error.records.front());
        return out << "\033[0m";
    }

    out << "error:\n"
        << "\033[3;41;30m"
        << "causes chain:"
        << "\033[0m"
        << "\n";
    for (const Error::err &record : error.records) {
        out << "\033[31m"
            << "\t";
        EitherPrivate::printRecord(out, record);
        out << "\033[0m"
            << "\n";
    }
    return out << "\033[3;41;30m"
               << "< ---- ---- >"
               << "\033[0m"
               << "\n";
}

/// For `qDebug() << error`, where the stream is a temporary.
inline QDebug operator<<(QDebug &&out, const Error &error)
{
    return out << error;
}

}
