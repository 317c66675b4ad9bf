#pragma once

#include <QString>

#include <expected>
#include <system_error>
#include <utility>

namespace brellin {

/// Why something did not happen. `message` is a German text for the person in front of the screen (without the name
/// of the file: whoever reports it puts that in front); `code` is the system's error where the system failed, else
/// empty, so that a caller can branch on the cause.
struct Failure {
    QString message;
    std::error_code code;

    bool operator==(const Failure &) const = default;

    /// The system's error `number` (an `errno` value) with its German description.
    static Failure system(int number);
    /// The same for the calling thread's current `errno`.
    static Failure lastSystem();
    /// The user or the program asked to stop.
    static Failure cancelled();

    bool isCancelled() const { return code == std::errc::operation_canceled; }
    bool is(std::errc which) const { return code == which; }
};

/// A value or the reason why there is none. Never dropped silently.
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

/// The value of a Result; a failure leaves the calling function with it.
#define TRY(expression)                                                                                                \
    __extension__({                                                                                                    \
        auto &&tried = (expression);                                                                                   \
        if (!tried) [[unlikely]]                                                                                       \
            return std::unexpected<::brellin::Failure>(std::move(tried).error());                                      \
        *std::move(tried);                                                                                             \
    })
