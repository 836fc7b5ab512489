#pragma once

#include <hotwordtextmodel.h>

class RichTextBox;

// The hot-word text model over the viewer's own rich-text box, so that the places found
// are the places the box counts when the mouse asks.
class RichTextBoxHotWordModel final : public HotWordTextModel
{
public:
    explicit RichTextBoxHotWordModel(RichTextBox &box);

    QString Text() const override;
    int SelStart() const override;
    void setSelStart(int place) override;
    int SelLength() const override;
    void setSelLength(int length) override;
    std::optional<quint32> SelColor() const override;

private:
    RichTextBox &m_box;
};
