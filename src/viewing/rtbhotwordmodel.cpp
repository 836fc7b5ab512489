#include "rtbhotwordmodel.h"

#include <richtextbox.h>

RichTextBoxHotWordModel::RichTextBoxHotWordModel(RichTextBox &box)
    : m_box(box)
{
}

QString RichTextBoxHotWordModel::Text() const
{
    return m_box.Text();
}

int RichTextBoxHotWordModel::SelStart() const
{
    return m_box.SelStart();
}

void RichTextBoxHotWordModel::setSelStart(int place)
{
    m_box.setSelStart(place);
}

int RichTextBoxHotWordModel::SelLength() const
{
    return m_box.SelLength();
}

void RichTextBoxHotWordModel::setSelLength(int length)
{
    m_box.setSelLength(length);
}

std::optional<quint32> RichTextBoxHotWordModel::SelColor() const
{
    return m_box.SelColor();
}
