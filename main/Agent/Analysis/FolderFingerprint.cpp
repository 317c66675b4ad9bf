#include "Agent/Analysis/FolderFingerprint.h"

#include "Disk/Digest.h"
#include "Disk/Walk.h"

#include <algorithm>
#include <string>
#include <vector>

namespace brellin {

std::optional<QByteArray> fingerprint(const Location &folder, const JobControl *control)
{
    const Location top = standardised(folder);
    std::vector<std::string> files;
    bool complete = true;
    const std::size_t prefix = top.native().size() + 1;
    const auto collect = [&](const WalkEntry &entry) {
        complete = complete && !entry.unreadable;
        if (entry.attributes.isFile())
            files.push_back(entry.location().native().substr(prefix) + ":" + std::to_string(entry.attributes.size));
        return std::ssize(files) < fingerprintFiles ? WalkStep::Continue : WalkStep::Stop;
    };
    const Result<WalkOutcome> outcome = walk(top, {.attributes = Attribute::Size, .prune = {}}, collect, control);
    if (!outcome || !outcome->unreadable.empty() || !complete || files.empty() || std::ssize(files) >= fingerprintFiles)
        return std::nullopt;
    std::ranges::sort(files);
    QByteArray text;
    for (const std::string &file : files) {
        if (!text.isEmpty())
            text += '|';
        text.append(file.data(), std::ssize(file));
    }
    return sha256OfBytes(text);
}

} // namespace brellin
