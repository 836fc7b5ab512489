#include "rtfsinks.h"

namespace richtext {

const TextRun &PlainTextSink::runFormat(const CharState &state)
{
    if (m_lastFormat && state == m_lastState)
        return *m_lastFormat;
    auto it = m_formats.find(state);
    if (it == m_formats.end()) {
        TextRun run;
        if (m_tables) {
            quint32 value = 0;
            if (m_tables->color(state.foreground, value)) {
                run.color = value;
                run.colorIsAuto = false;
            }
            if (m_tables->color(state.background, value)) {
                run.background = value;
                run.hasBackground = true;
            }
            if (const FontEntry *font = m_tables->font(state.font))
                run.font = font->name;
        }
        run.bold = state.bold;
        run.italic = state.italic;
        run.underline = state.underline;
        run.strike = state.strike;
        run.size = state.halfPoints / 2.0;
        it = m_formats.emplace(state, run).first;
    }
    m_lastState = state;
    m_lastFormat = &it->second;
    return it->second;
}

void PlainTextSink::append(const QChar *chars, qsizetype length, const CharState &state)
{
    if (length <= 0)
        return;
    const TextRun &format = runFormat(state);
    const int start = static_cast<int>(m_out.text.size());
    m_out.text.append(chars, length);
    if (!m_out.runs.empty() && m_out.runs.back().sameFormat(format)) {
        m_out.runs.back().length += static_cast<int>(length);
        return;
    }
    TextRun run = format;
    run.start = start;
    run.length = static_cast<int>(length);
    m_out.runs.push_back(std::move(run));
}

void PlainTextSink::text(const QString &chunk, const CharState &chars)
{
    const qsizetype at = m_out.text.size();
    append(chunk.constData(), chunk.size(), chars);
    // A line break counts one place, as in the document's plain text.
    if (chunk.contains(QChar(u'\u2028'))) {
        QChar *data = m_out.text.data();
        for (qsizetype i = at; i < m_out.text.size(); ++i) {
            if (data[i] == QChar(u'\u2028'))
                data[i] = QChar(u'\n');
        }
    }
}

void PlainTextSink::paragraphEnd(const CharState &chars, const ParaState &)
{
    const QChar end(u'\n');
    append(&end, 1, chars);
}

void PlainTextSink::picture(const RtfPicture &, const CharState &chars)
{
    const QChar object(ObjectCharacter);
    append(&object, 1, chars);
}

void PlainTextSink::finish(const ParaState &)
{
}

} // namespace richtext
