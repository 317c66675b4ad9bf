#include "System/PdfReader.h"

namespace brellin {

Result<QString> PdfReader::firstPageText(const Location &pdf, const JobControl *control) const
{
    ProcessRequest request;
    request.program = m_program.native();
    request.arguments = {"pdf-text", standardised(pdf).native()};
    request.timeout = std::chrono::seconds(10);
    const ProcessOutput output = TRY(m_processes.run(request, control));
    if (output.exitCode != 0)
        return failure(QStringLiteral("Der Text der PDF-Datei lässt sich nicht lesen."));
    return QString::fromUtf8(output.output);
}

} // namespace brellin
