// The destinations of RTF that are not the text itself: font and colour tables, pictures,
// the rich-edit control's numbering and the list tables of word processors.
#include "rtfreader.h"

#include "rtfcodepages.h"
#include "rtfpicture.h"

namespace richtext {

namespace {

ListKind listKindForNfc(int nfc)
{
    switch (nfc) {
    case 0:
        return ListKind::Decimal;
    case 1:
        return ListKind::UpperRoman;
    case 2:
        return ListKind::LowerRoman;
    case 3:
        return ListKind::UpperAlpha;
    case 4:
        return ListKind::LowerAlpha;
    case 255:
        return ListKind::None;
    default:
        return nfc == 23 ? ListKind::Bullet : ListKind::Decimal;
    }
}

} // namespace

void RtfReader::resolveList(ParaState &para) const
{
    if (para.listOverride <= 0)
        return;
    if (!m_listIndexValid) {
        // Built once the tables are read, so that each paragraph costs two look-ups.
        m_overrideIndex.clear();
        for (const ListOverride &o : m_overrides)
            m_overrideIndex.try_emplace(o.number, o.listId);
        m_listIndex.clear();
        for (std::size_t i = 0; i < m_lists.size(); ++i)
            m_listIndex.try_emplace(m_lists[i].id, i);
        m_listIndexValid = true;
    }
    para.list = ListKind::Bullet; // an override that no table defines still marks a list item
    const auto o = m_overrideIndex.find(para.listOverride);
    if (o == m_overrideIndex.end())
        return;
    const auto l = m_listIndex.find(o->second);
    if (l == m_listIndex.end())
        return;
    const WordList &list = m_lists[l->second];
    if (list.levels.empty())
        return;
    const ListLevel &level = list.levels[static_cast<std::size_t>(
        clampInt(para.listLevel, 0, static_cast<int>(list.levels.size()) - 1))];
    para.list = listKindForNfc(level.nfc);
    para.listStart = level.start;
}

void RtfReader::commitFontName()
{
    if (m_fontNumber < 0) {
        m_fontName.clear();
        return;
    }
    FontEntry &entry = m_tables.fonts[m_fontNumber];
    if (!m_fontName.isEmpty() || entry.name.isEmpty()) {
        int number = entry.codePage;
        if (number == 0)
            number = codepages::codePageForCharset(entry.charset);
        if (number == 0)
            number = m_tables.ansiCodePage;
        const codepages::CodePage &page = codepages::codePage(number);
        QString name;
        for (const char c : std::as_const(m_fontName)) {
            const unsigned char b = static_cast<unsigned char>(c);
            if (b >= 0x20)
                name.append(QChar(b < 0x80 ? char16_t(b) : page.decode(b)));
        }
        name = name.trimmed();
        if (!name.isEmpty())
            entry.name = name;
    }
    m_fontName.clear();
    m_codePage = nullptr;
}

void RtfReader::finishPicture()
{
    flush();
    RtfPicture picture;
    if (m_sink.wantsPictures()) {
        PictureInput input;
        switch (m_pict.format) {
        case PictData::Png:
            input.format = PictureInput::Png;
            break;
        case PictData::Jpeg:
            input.format = PictureInput::Jpeg;
            break;
        case PictData::Dib:
            input.format = PictureInput::Dib;
            break;
        case PictData::Wmf:
            input.format = PictureInput::Wmf;
            break;
        case PictData::Emf:
            input.format = PictureInput::Emf;
            break;
        default:
            input.format = PictureInput::Unknown;
            break;
        }
        input.data = m_pict.data;
        input.picw = m_pict.picw;
        input.pich = m_pict.pich;
        input.goalw = m_pict.goalw;
        input.goalh = m_pict.goalh;
        input.scalex = m_pict.scalex;
        input.scaley = m_pict.scaley;
        picture = decodePicture(input);
    }
    m_pict = PictData {};
    if (!m_pictChars.hidden)
        m_sink.picture(picture, m_pictChars);
}

void RtfReader::handlePictWord(Kw keyword, int param)
{
    switch (keyword) {
    case Kw::PngBlip:
        m_pict.format = PictData::Png;
        break;
    case Kw::JpegBlip:
        m_pict.format = PictData::Jpeg;
        break;
    case Kw::DiBitmap:
        m_pict.format = PictData::Dib;
        break;
    case Kw::WMetafile:
        m_pict.format = PictData::Wmf;
        break;
    case Kw::EmfBlip:
        m_pict.format = PictData::Emf;
        break;
    case Kw::Picw:
        m_pict.picw = param;
        break;
    case Kw::Pich:
        m_pict.pich = param;
        break;
    case Kw::PicwGoal:
        m_pict.goalw = param;
        break;
    case Kw::PichGoal:
        m_pict.goalh = param;
        break;
    case Kw::PicScaleX:
        m_pict.scalex = param;
        break;
    case Kw::PicScaleY:
        m_pict.scaley = param;
        break;
    default:
        break;
    }
}

void RtfReader::handleTableWord(Dest dest, Kw keyword, int param)
{
    switch (dest) {
    case Dest::FontTable:
        switch (keyword) {
        case Kw::F:
            commitFontName();
            m_fontNumber = param;
            m_tables.fonts.try_emplace(param);
            break;
        case Kw::FCharset:
            if (m_fontNumber >= 0)
                m_tables.fonts[m_fontNumber].charset = param;
            break;
        case Kw::Cpg:
            if (m_fontNumber >= 0)
                m_tables.fonts[m_fontNumber].codePage = param;
            break;
        default:
            break;
        }
        return;
    case Dest::ColorTable: {
        const quint32 c = static_cast<quint32>(clampInt(param, 0, 255));
        switch (keyword) {
        case Kw::Red:
            m_color.value = (m_color.value & 0xFFFF00u) | c;
            m_color.isAuto = false;
            break;
        case Kw::Green:
            m_color.value = (m_color.value & 0xFF00FFu) | (c << 8);
            m_color.isAuto = false;
            break;
        case Kw::Blue:
            m_color.value = (m_color.value & 0x00FFFFu) | (c << 16);
            m_color.isAuto = false;
            break;
        default:
            break;
        }
        return;
    }
    case Dest::Pn:
        switch (keyword) {
        case Kw::PnLvlBlt:
            m_pn.list = ListKind::Bullet;
            break;
        case Kw::PnLvlBody:
        case Kw::PnLvl:
            if (m_pn.list == ListKind::None || m_pn.list == ListKind::Bullet)
                m_pn.list = ListKind::Decimal;
            m_pn.listLevel = keyword == Kw::PnLvl ? clampInt(param - 1, 0, 8) : 0;
            break;
        case Kw::PnLvlCont:
            m_pn.list = ListKind::None;
            break;
        case Kw::PnDec:
            m_pn.list = ListKind::Decimal;
            break;
        case Kw::PnUcLtr:
            m_pn.list = ListKind::UpperAlpha;
            break;
        case Kw::PnLcLtr:
            m_pn.list = ListKind::LowerAlpha;
            break;
        case Kw::PnUcRm:
            m_pn.list = ListKind::UpperRoman;
            break;
        case Kw::PnLcRm:
            m_pn.list = ListKind::LowerRoman;
            break;
        case Kw::PnStart:
            m_pn.listStart = clampInt(param, 0, 32767);
            break;
        default:
            break;
        }
        return;
    case Dest::ListTable:
        m_listIndexValid = false;
        switch (keyword) {
        case Kw::List:
            m_lists.emplace_back();
            break;
        case Kw::ListLevel:
            if (!m_lists.empty() && m_lists.back().levels.size() < 9)
                m_lists.back().levels.emplace_back();
            break;
        case Kw::LevelNfc:
            if (!m_lists.empty() && !m_lists.back().levels.empty())
                m_lists.back().levels.back().nfc = param;
            break;
        case Kw::LevelStartAt:
            if (!m_lists.empty() && !m_lists.back().levels.empty())
                m_lists.back().levels.back().start = clampInt(param, 0, 32767);
            break;
        case Kw::ListId:
            if (!m_lists.empty())
                m_lists.back().id = param;
            break;
        default:
            break;
        }
        return;
    case Dest::ListOverrideTable:
        m_listIndexValid = false;
        switch (keyword) {
        case Kw::ListOverride:
            m_overrides.emplace_back();
            break;
        case Kw::ListId:
            if (!m_overrides.empty())
                m_overrides.back().listId = param;
            break;
        case Kw::Ls:
            if (!m_overrides.empty())
                m_overrides.back().number = param;
            break;
        default:
            break;
        }
        return;
    default:
        return;
    }
}

} // namespace richtext
