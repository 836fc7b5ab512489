#pragma once

#include <QString>
#include <QtGlobal>

#include <memory>
#include <optional>
#include <vector>

namespace richtext {
struct PlainText;
}

namespace hotwords {
class PhraseSearch;
}

// What locating the hot words asks of a text: its plain text, a caret and a selection
// counted in the same places, and the colour of the selection. The colour is read two
// ways: with an empty selection, the character just before the caret (at the start of a
// non-empty paragraph, the one after it); with a selection, all of its characters, Null
// (std::nullopt) if they differ. Paragraph ends carry no colour of their own.
//
// Colours are 0x00BBGGRR numbers; 0 is black, and text without a colour reads as black.
class HotWordTextModel
{
public:
    HotWordTextModel();
    virtual ~HotWordTextModel();
    Q_DISABLE_COPY_MOVE(HotWordTextModel)

    virtual QString Text() const = 0;
    virtual int SelStart() const = 0;
    // Puts the caret there, clipped to the text, and empties the selection.
    virtual void setSelStart(int place) = 0;
    virtual int SelLength() const = 0;
    // Selects from SelStart on, clipped to the text.
    virtual void setSelLength(int length) = 0;
    virtual std::optional<quint32> SelColor() const = 0;

    // The text, folded and indexed for searching. A text that hot words are located in
    // is read-only, so this is built from Text() once; textChanged() forgets it.
    const hotwords::PhraseSearch &search();

protected:
    void textChanged();

private:
    std::unique_ptr<hotwords::PhraseSearch> m_search;
};

// The model over plain text with formatting runs, as the RTF reader gives them: the
// content tool, the tests and the benchmark locate hot words without any widget.
class PlainTextHotWordModel final : public HotWordTextModel
{
public:
    explicit PlainTextHotWordModel(const richtext::PlainText &plain);
    // A text and one colour per character (for tests that paint by hand).
    PlainTextHotWordModel(QString text, std::vector<quint32> colors);

    QString Text() const override { return m_text; }
    int SelStart() const override { return m_selStart; }
    void setSelStart(int place) override;
    int SelLength() const override { return m_selLength; }
    void setSelLength(int length) override;
    std::optional<quint32> SelColor() const override;

private:
    bool isParagraphEnd(int place) const { return m_text.at(place) == u'\n'; }

    QString m_text;
    std::vector<quint32> m_colors; // one per character
    int m_selStart = 0;
    int m_selLength = 0;
};
