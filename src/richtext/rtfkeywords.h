#pragma once

#include <QtGlobal>

#include <string_view>

// The control words that the RTF reader acts on. Every other word is passed over.
namespace richtext {

enum class Kw : quint8 {
    // document
    Rtf,
    Ansi,
    Mac,
    Pc,
    Pca,
    AnsiCpg,
    Deff,
    Uc,
    U,
    // destinations read
    FontTable,
    ColorTable,
    Pict,
    ShpPict,
    Object,
    Result,
    Upr,
    Ud,
    Pn,
    ListTable,
    ListOverrideTable,
    // destinations passed over
    SkipDest,
    // character
    Plain,
    F,
    Fs,
    Cf,
    Cb,
    Highlight,
    B,
    I,
    Ul,
    UlNone,
    Strike,
    V,
    Super,
    Sub,
    NoSuperSub,
    // paragraph
    Pard,
    Par,
    Line,
    Tab,
    Ql,
    Qc,
    Qr,
    Qj,
    Li,
    Ri,
    Fi,
    Sb,
    Sa,
    Sl,
    SlMult,
    Tx,
    Tqr,
    Tqc,
    Tqdec,
    Ls,
    Ilvl,
    Cell,
    Row,
    Page,
    // special characters
    EmDash,
    EnDash,
    Bullet,
    LQuote,
    RQuote,
    LDblQuote,
    RDblQuote,
    EmSpace,
    EnSpace,
    QmSpace,
    Zwj,
    Zwnj,
    LtrMark,
    RtlMark,
    // font table
    FCharset,
    Cpg,
    // colour table
    Red,
    Green,
    Blue,
    // pictures
    PngBlip,
    JpegBlip,
    DiBitmap,
    WMetafile,
    EmfBlip,
    Picw,
    Pich,
    PicwGoal,
    PichGoal,
    PicScaleX,
    PicScaleY,
    // rich-edit numbering
    PnLvlBlt,
    PnLvlBody,
    PnLvlCont,
    PnLvl,
    PnDec,
    PnUcLtr,
    PnLcLtr,
    PnUcRm,
    PnLcRm,
    PnStart,
    // Word lists
    List,
    ListLevel,
    ListOverride,
    ListId,
    LevelNfc,
    LevelStartAt,
};

// False for a word the reader does not know.
bool findKeyword(std::string_view word, Kw &keyword);

} // namespace richtext
