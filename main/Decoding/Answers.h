#pragma once

#include "System/DecoderProtocol.h"

namespace brellin {

/// Answers one request, of whatever kind but a video's, in this process, which is confined by now.
Result<QByteArray> answer(const DecoderRequest &request);

/// Answers the requests that come in, one after the other, until there are no more (or one that makes no sense).
void answerAll(int in, int out);

} // namespace brellin
