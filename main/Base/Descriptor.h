#pragma once

#include "Base/Result.h"

#include <utility>

namespace brellin {

/// Owns a file descriptor (file, folder, socket or pipe end) and closes it on destruction.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int number) : m_number(number) {}
    ~Descriptor() { reset(); }
    Descriptor(Descriptor &&other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    Descriptor &operator=(Descriptor &&other) noexcept;
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    int number() const { return m_number; }
    bool isOpen() const { return m_number >= 0; }
    void reset();
    /// Closes and returns write errors that are reported only then (network volumes).
    Result<void> close();

private:
    int m_number = -1;
};

} // namespace brellin
