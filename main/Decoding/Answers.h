#pragma once

#include "System/DecoderProtocol.h"

namespace brellin {

/// Answers one request of any kind except video. The process must already be confined.
Result<QByteArray> answer(const DecoderRequest &request);

/// Answers requests from `in` one after the other, until end of file or an invalid request.
void answerAll(int in, int out);

} // namespace brellin
