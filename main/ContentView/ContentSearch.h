#pragma once

#include "Base/Descriptor.h"
#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"
#include "ContentView/NameQuery.h"

#include <QString>

namespace brellin {

class Decoder;

/// What was found in a file.
struct ContentAnswer {
    QString passage;   ///< „Zeile 12: …“ or „Seite 3: …“; empty if the text was not found
    bool whole = true; ///< false if only the beginning was searched, in vain
};

/// Looks for a text in the contents of files; ignores case and Unicode composition. Thread-safe; blocking.
///
/// Text (UTF-8, UTF-16, otherwise Latin-1) is searched line by line, the first 64 MiB of it; PDFs by the decoder, page
/// by page, the first 2,000 pages. Other files are not searched. Opens regular files only, never through a link, and no
/// placeholders of a cloud service.
class ContentSearch {
public:
    /// Without a decoder PDFs cannot be read.
    ContentSearch(const QString &text, Decoder *decoder) : m_text(text), m_wanted(text), m_decoder(decoder) {}

    /// Fails if the file cannot be read, or with `Failure::cancelled`.
    Result<ContentAnswer> find(const Location &file, const JobControl *control) const;

private:
    Result<ContentAnswer> findInPdf(const Location &file, const JobControl *control) const;
    Result<ContentAnswer> findInText(const Descriptor &file, const JobControl *control) const;

    QString m_text;
    NameQuery m_wanted;
    Decoder *m_decoder;
};

/// At most 160 characters of a text around the first place where it contains `wanted`, on one line.
QString excerpt(const QString &text, const QString &wanted);

} // namespace brellin
