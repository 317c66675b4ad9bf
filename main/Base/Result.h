#pragma once

#include <QString>

#include <expected>
#include <system_error>
#include <utility>

namespace brellin {

/// Why an operation failed. `message` is German text for the user, without the file's name, which the caller prepends.
/// `code` is the system error, so that callers can branch on the cause; empty if no system call failed.
struct Failure {
    QString message;
    std::error_code code;

    bool operator==(const Failure &) const = default;

    /// The system error `number` (an `errno` value) with its German description.
    static Failure system(int number);
    /// The same for the calling thread's current `errno`.
    static Failure lastSystem();
    /// Cancelled by the user or the program.
    static Failure cancelled();

    bool isCancelled() const { return code == std::errc::operation_canceled; }
    bool is(std::errc which) const { return code == which; }
};

/// A value, or the reason why there is none.
template <class T>
class [[nodiscard]] Result : public std::expected<T, Failure> {
public:
    using std::expected<T, Failure>::expected;
};

inline std::unexpected<Failure> failure(Failure why)
{
    return std::unexpected<Failure>(std::move(why));
}

inline std::unexpected<Failure> failure(const QString &message)
{
    return std::unexpected<Failure>(Failure{message, {}});
}

} // namespace brellin

/// The value of a Result; returns from the calling function on failure.
#define TRY(expression)                                                                                                \
    __extension__({                                                                                                    \
        auto &&tried = (expression);                                                                                   \
        if (!tried) [[unlikely]]                                                                                       \
            return std::unexpected<::brellin::Failure>(std::move(tried).error());                                      \
        *std::move(tried);                                                                                             \
    })
