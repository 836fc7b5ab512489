#include "hotwordtextmodel.h"

#include "phrasesearch.h"

#include <rtf.h>

#include <algorithm>

HotWordTextModel::HotWordTextModel() = default;
HotWordTextModel::~HotWordTextModel() = default;

const hotwords::PhraseSearch &HotWordTextModel::search()
{
    if (!m_search)
        m_search = std::make_unique<hotwords::PhraseSearch>(Text());
    return *m_search;
}

void HotWordTextModel::textChanged()
{
    m_search.reset();
}

PlainTextHotWordModel::PlainTextHotWordModel(const richtext::PlainText &plain)
    : m_text(plain.text)
    , m_colors(std::size_t(plain.text.size()), 0u)
{
    for (const richtext::TextRun &run : plain.runs) {
        const quint32 color = run.colorIsAuto ? 0u : run.color;
        const int from = std::clamp(run.start, 0, int(m_text.size()));
        const int to = std::clamp(run.start + run.length, from, int(m_text.size()));
        std::fill(m_colors.begin() + from, m_colors.begin() + to, color);
    }
}

PlainTextHotWordModel::PlainTextHotWordModel(QString text, std::vector<quint32> colors)
    : m_text(std::move(text))
    , m_colors(std::move(colors))
{
    m_colors.resize(std::size_t(m_text.size()), 0u);
}

void PlainTextHotWordModel::setSelStart(int place)
{
    m_selStart = std::clamp(place, 0, int(m_text.size()));
    m_selLength = 0;
}

void PlainTextHotWordModel::setSelLength(int length)
{
    m_selLength = std::clamp(length, 0, int(m_text.size()) - m_selStart);
}

std::optional<quint32> PlainTextHotWordModel::SelColor() const
{
    const int n = int(m_text.size());
    if (n == 0)
        return 0u;
    if (m_selLength == 0) {
        const int caret = m_selStart;
        const bool paragraphStart = caret == 0 || isParagraphEnd(caret - 1);
        const int place = paragraphStart && caret < n && !isParagraphEnd(caret) ? caret : caret - 1;
        return m_colors[std::size_t(std::max(place, 0))];
    }
    std::optional<quint32> color;
    const int to = m_selStart + m_selLength;
    for (int place = m_selStart; place < to; ++place) {
        if (isParagraphEnd(place))
            continue;
        const quint32 c = m_colors[std::size_t(place)];
        if (!color)
            color = c;
        else if (*color != c)
            return std::nullopt;
    }
    // Nothing but paragraph ends: the paragraph's own colour.
    return color ? color : std::optional<quint32>(m_colors[std::size_t(m_selStart)]);
}
