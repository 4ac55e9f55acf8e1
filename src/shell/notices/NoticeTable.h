#pragma once

#include "viewer/fetch/FetchOutcome.h"
#include "widgets/Notice.h"

#include <QString>
#include <QStringList>

/// What a notice offers. Its buttons have these numbers.
enum class NoticeAction {
    /// Switches Keep Refreshing on, which resumes.
    KeepRefreshing,
    /// Begins a new countdown.
    Resume,
    /// Puts the camera's new address into the list and the favourites, and fetches it.
    UseNewAddress,
    /// Fetches what the server points to, this once.
    Follow,
    /// Asks for name and password.
    SignIn,
    TryAgain,
    EditCamera,
    OpenInBrowser,
    Undo,
    /// Shows in the list what has been added.
    Show,
    OpenFolder,
    /// Offers the cameras anew that the directory has not got.
    OfferAgain,
};

/// What a person is told about a fetch that brought no whole picture, or after which refreshing
/// has stopped, and what is offered. An empty sentence where there is nothing to say.
/// `isStalled`: refreshing has stopped although it is wanted. `isListed`: the camera is in the
/// list, where it can be edited.
Notice::Message noticeOf(const FetchOutcome& outcome, bool isStalled, bool isListed);

/// A camera, or a category with its cameras, was removed from the list; it can be undone.
Notice::Message noticeOfRemoval(const QString& name);

/// The list was loaded anew and holds `cameras`; it can be undone.
Notice::Message noticeOfReload(qsizetype cameras);

/// `added` cameras joined the list, which had `refused` others already.
Notice::Message noticeOfAddition(qsizetype added, qsizetype refused);

/// The cameras of these names could not be offered to the directory; `reason` is why the last of
/// them could not.
Notice::Message noticeOfFailedOffers(const QStringList& names, const QString& reason);

/// The file at `path` was saved. `reason`, where it is not empty, says why it was not.
Notice::Message noticeOfSave(const QString& path, const QString& reason = {});

/// Another instance changed the list, and what did not go together with it is kept at `path`.
Notice::Message noticeOfKeptList(const QString& path);
