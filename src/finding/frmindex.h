#pragma once

#include <frmfoto.h>
#include <frmmediaplayer.h>

#include <readable.h>

#include <QPointer>
#include <QWidget>

class Btn;
class QLabel;
class QTabBar;
class QTreeWidget;
class QTreeWidgetItem;
class RichTextBox;
class Session;

// "Ευρετήριο": the terms of the content by type, in tabs after "Αλφαβητικό", the
// explanation of the chosen term and three buttons that show its picture and play its
// sound or video. Opened from the shell and by an index word in a text. It is the
// session's index window; it keeps the shell's "Ευρετήριο" mark while it is loaded.
class frmIndex final : public QWidget, public speech::Readable
{
    Q_OBJECT

public:
    explicit frmIndex(Session &session, QWidget *parent = nullptr);
    ~frmIndex() override;

    // Read aloud: the explanation of the term shown.
    QString textToRead() const override;
    QTextEdit *textBoxToRead() const override;
    Q_DISABLE_COPY_MOVE(frmIndex)

    // Controls.
    QTabBar *const tbs;
    QTreeWidget *const LvEnnoia; // text Oros, tag EuretirioID
    RichTextBox *const rtfExp;
    Btn *const cmdPicture; // its Tag holds the picture's file name
    Btn *const cmdSound;
    Btn *const cmdVideo;
    QLabel *const Picture1;
    QLabel *const Image1;

    // Read by the media player: 0 sound, 1 video; and the paths of the term's files.
    qint32 MediaKind = 0;
    QString VideoPath;
    QString SoundPath;

    // Fills the tabs and the list of all terms; sets the shell's mark.
    void Load();

    // Lists the terms of a type (0: all) on its tab and shows the first.
    void FillListView(qint32 type);
    // Selects the term, if it is in the list, and shows the explanation and picture name
    // given, which come with a word of a text.
    void DisplayHotword(const QString &term, const QString &explanation, const QString &pictureName);

    // The type listed, 0 for all.
    qint32 currentType() const { return m_type; }
    // The windows this form opened, while they are open.
    frmMediaPlayer *mediaPlayer() const { return m_player; }
    frmFoto *pictureWindow() const { return m_foto; }
    // The first term whose text begins with the whole word(s) given, case ignored.
    QTreeWidgetItem *FindItem(const QString &text) const;
    // A term's tag in the list.
    static QString Tag(const QTreeWidgetItem *item);

    // Shows a picture in Picture1, as large as fits, centred.
    void FitPicture(const QPixmap &picture);

    // Event handlers, as the controls raise them.
    void LvEnnoia_ItemClick(QTreeWidgetItem *item);
    void tbs_Click();
    void cmdPicture_Click();
    void cmdSound_Click();
    void cmdVideo_Click();

    // The design, in twips.
    static constexpr int FormWidth = 9000;
    static constexpr int FormHeight = 6540;

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void layOut();
    void FillTabs();
    void CloseOpenWindows(bool picture);
    void PlayMedia(
        qint32 kind, const QString &path, bool &flag, const QString &caption, const QString &missing);
    void CenterPlayer(frmMediaPlayer *player);

    Session &m_session;
    qint32 m_type = 0;
    bool m_pictureOpen = false;
    bool m_soundOpen = false;
    bool m_videoOpen = false;
    QPointer<frmMediaPlayer> m_player;
    QPointer<frmFoto> m_foto;
};
