#pragma once

#include <cstddef>

#include <pthread.h>

namespace brellin::test {

/// While it exists, creating a thread fails, because its default stack size is impossible.
class NoThreads {
public:
    NoThreads()
    {
        ::pthread_getattr_default_np(&m_usual);
        pthread_attr_t huge;
        ::pthread_attr_init(&huge);
        ::pthread_attr_setstacksize(&huge, std::size_t{1} << 50);
        ::pthread_setattr_default_np(&huge);
        ::pthread_attr_destroy(&huge);
    }
    ~NoThreads()
    {
        ::pthread_setattr_default_np(&m_usual);
        ::pthread_attr_destroy(&m_usual);
    }
    NoThreads(const NoThreads &) = delete;
    NoThreads &operator=(const NoThreads &) = delete;

private:
    pthread_attr_t m_usual;
};

} // namespace brellin::test
