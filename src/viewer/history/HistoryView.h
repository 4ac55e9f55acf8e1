#pragma once

#include <QObject>
#include <QPoint>

class History;
class ImageView;
class QLabel;
class Still;
class ThumbView;
class ToolBar;

/// Shows the history: one entry of it in the picture view with its number in the caption, or all
/// of it in the thumbnail strip; and the commands that step through it and delete from it.
class HistoryView : public QObject
{
    Q_OBJECT

public:
    /// The controls of the viewer that show the history.
    struct Parts
    {
        ImageView& imgMain;
        ThumbView& tvMain;
        QLabel& lblPic;
        ToolBar& tbMain;
    };

    HistoryView(History& history, const Parts& parts, QObject* parent);

    /// Shows entry `n` with its caption. Announces its address, unless it is the frame of a movie.
    /// A number outside 1..Count is ignored.
    void ShowEntry(int n);
    /// Makes entry `n` the current one and shows it, without any announcement. A number outside
    /// 1..Count is ignored.
    void showWithoutAnnouncing(int n);
    /// The caption of the current entry, whose picture is on show already.
    void updateCaption();

    /// Appends the newest entry, which is `picture`, to the strip, whose first ones make room for
    /// it. Nothing is appended where the history has lost it already.
    void mirrorNewest(const Still& picture);

    void Back();
    void Forward();
    /// The button's way to delete the entry on show: the next one, or the new last, follows it.
    void DeleteCurrent();
    /// The menu's way. Kept: nothing follows, and CurrentImage keeps its number.
    void DeleteCurrentOnly();
    void DeleteAll();
    /// A movie is going to be the history: leaves the strip, removes all entries and the picture.
    /// Caption, CurrentImage and the strip's thumbnails stay. What is fetched or opened until
    /// endMovie() is on show at once, but an entry only then.
    void beginMovie();
    /// The movie has joined the history, whole or in part. The newest picture that came meanwhile
    /// is on show, else what was; "Image N/A" where nothing is.
    void endMovie();
    /// From the picture to the strip and back. While the strip is on show the toolbar offers
    /// nothing that changes the history.
    void ToggleView();
    /// From the strip, where it is on show, back to the picture.
    void leaveStrip();
    /// The camera key that the picture on show was fetched by; empty for any other picture.
    QString cameraOnShow() const;
    /// Announces the address of the current entry, as ShowEntry() does.
    void announceCurrent();

    /// A server has nothing newer than the newest entry of `address` and `camera`: that is put on
    /// show, unless some picture of theirs is; for a camera that was just chosen (`isChoice`) in
    /// any case.
    void showNewestOf(const QString& address, const QString& camera, bool isChoice);

signals:
    /// An entry has been put on show that came from `address` (no scheme; empty for a file);
    /// `camera` is the camera key it was fetched by, empty for a file.
    void AddressShown(const QString& address, const QString& camera);
    /// The user has deleted the entry of `picture`.
    void Deleted(const Still& picture);

private:
    void showPicture(int n);
    void announce(int n);
    void showCaption(int n);
    void showNothing();
    void removeCurrent();
    void emptyHistory();
    void chooseThumbnail(int n);
    void showTip(int n, QPoint globalAt);
    void showStrip(bool on);
    bool isOnShow(const QString& address, const QString& camera) const;

    History& m_history;
    Parts m_parts;
};
