#include "Base/Descriptor.h"

#include <cerrno>

#include <unistd.h>

namespace brellin {

Descriptor &Descriptor::operator=(Descriptor &&other) noexcept
{
    if (this != &other) {
        reset();
        m_number = std::exchange(other.m_number, -1);
    }
    return *this;
}

void Descriptor::reset()
{
    if (const int number = std::exchange(m_number, -1); number >= 0)
        ::close(number);
}

Result<void> Descriptor::close()
{
    const int number = std::exchange(m_number, -1);
    // After EINTR the descriptor is closed as well; closing it again might hit another thread's.
    if (number >= 0 && ::close(number) != 0 && errno != EINTR)
        return failure(Failure::lastSystem());
    return {};
}

} // namespace brellin
