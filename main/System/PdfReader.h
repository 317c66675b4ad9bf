#pragma once

#include "Base/Location.h"
#include "System/ProcessRunner.h"

#include <QString>

namespace brellin {

/// Reads PDFs in a separate process, which isolates this one from broken or hostile files.
class PdfReader {
public:
    /// `program` is our decoder ("…/brellin-bild") next to the running program.
    PdfReader(ProcessRunner &processes, Location program) : m_processes(processes), m_program(std::move(program)) {}

    /// The text of the first page, truncated if long; empty for a scanned page. Fails if the file cannot be read within
    /// ten seconds. Blocking: call on workers only.
    Result<QString> firstPageText(const Location &pdf, const JobControl *control = nullptr) const;

private:
    ProcessRunner &m_processes;
    const Location m_program;
};

} // namespace brellin
