#include "richtextruns.h"

#include <QTextBlock>
#include <QTextDocument>

#include <algorithm>

namespace richtextbox {

void FormatRuns::build(const QTextDocument &document)
{
    m_starts.clear();
    m_ends.clear();
    m_formats.clear();
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            if (!fragment.isValid() || fragment.length() == 0)
                continue;
            const int format = fragment.charFormatIndex();
            if (!m_formats.empty() && m_formats.back() == format && m_ends.back() == fragment.position()) {
                m_ends.back() = fragment.position() + fragment.length();
                continue;
            }
            m_starts.push_back(fragment.position());
            m_ends.push_back(fragment.position() + fragment.length());
            m_formats.push_back(format);
        }
    }
    m_valid = true;
}

void FormatRuns::formatsIn(const QTextDocument &document, int from, int to, QVarLengthArray<int, 8> &formats)
{
    formats.clear();
    if (!m_valid)
        build(document);
    auto first = std::upper_bound(m_starts.begin(), m_starts.end(), from);
    std::size_t i = first == m_starts.begin() ? 0 : std::size_t(first - m_starts.begin()) - 1;
    for (; i < m_starts.size() && m_starts[i] < to; ++i) {
        if (m_ends[i] <= from)
            continue;
        if (!formats.contains(m_formats[i]))
            formats.append(m_formats[i]);
    }
}

} // namespace richtextbox
