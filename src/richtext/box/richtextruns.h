#pragma once

#include <QVarLengthArray>

#include <vector>

class QTextDocument;

namespace richtextbox {

// Where each character format of a document lies, as a sorted list of runs, so that
// the formats of a selection are found by a binary search instead of a walk through
// the paragraph. Paragraph ends are not in any run. Built on first use after each
// change of the document.
class FormatRuns final
{
public:
    void invalidate() { m_valid = false; }

    // The distinct character format indexes of the document's characters in [from, to).
    void formatsIn(const QTextDocument &document, int from, int to, QVarLengthArray<int, 8> &formats);

private:
    void build(const QTextDocument &document);

    std::vector<int> m_starts;
    std::vector<int> m_ends;
    std::vector<int> m_formats;
    bool m_valid = false;
};

} // namespace richtextbox
