#pragma once

#include "System/Decoders.h"

#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>

namespace brellin::test {

/// A picture of two pixels.
inline DecodedPicture redPicture()
{
    return {2, 1, false, QByteArray("\xFF\0\0\xFF\0\xFF\0\x80", 8)};
}

/// A decoder that returns a small picture, or the test's answers, and can be held back.
class FakeDecoder : public Decoder {
public:
    Result<QByteArray> ask(const DecoderRequest &request, const JobControl *control) override
    {
        std::unique_lock lock(m_mutex);
        m_asked.push_back(request);
        while (m_held && !control->cancelled())
            m_changed.wait_for(lock, std::chrono::milliseconds(5));
        if (control->cancelled())
            return failure(Failure::cancelled());
        if (before)
            before();
        const auto other = answers.find(request.word);
        return other == answers.end() ? answer : other->second;
    }
    std::vector<DecoderRequest> asked()
    {
        const std::scoped_lock lock(m_mutex);
        return m_asked;
    }
    void hold(bool held)
    {
        const std::scoped_lock lock(m_mutex);
        m_held = held;
    }

    Result<QByteArray> answer = bytesOf(redPicture());
    std::map<std::string, Result<QByteArray>> answers; ///< answers to requests with this word
    std::function<void()> before;                      ///< called on the worker just before answering

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<DecoderRequest> m_asked;
    bool m_held = false;
};

} // namespace brellin::test
