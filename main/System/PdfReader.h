#pragma once

#include "Base/Location.h"
#include "System/ProcessRunner.h"

#include <QString>

namespace brellin {

/// Reads PDF files in a process of its own: whatever a broken or hostile file does there, this one goes on.
class PdfReader {
public:
    /// `program` is our own decoder ("…/brellin-bild"), which lies beside the running program.
    PdfReader(ProcessRunner &processes, Location program) : m_processes(processes), m_program(std::move(program)) {}

    /// The text of the first page, or the beginning of a long one; empty where it is a picture. A failure when the file
    /// cannot be read within ten seconds. Blocking: called on workers only.
    Result<QString> firstPageText(const Location &pdf, const JobControl *control = nullptr) const;

private:
    ProcessRunner &m_processes;
    const Location m_program;
};

} // namespace brellin
