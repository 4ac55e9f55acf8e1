#include "shell/notices/NoticeTable.h"

#include "cameras/CameraTexts.h"

#include <QCoreApplication>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace {

using Kind = FetchOutcome::Kind;
using Action = NoticeAction;

/// One outcome of a fetch. In its texts %1 is the camera's host, %2 the address that its server
/// names, %3 the outcome's text, and %4 what was sent.
struct Row
{
    Kind kind;
    /// Empty where there is nothing to say unless refreshing has stopped.
    const char* sentence;
    QList<Action> actions;
    /// Behind "Refreshing has stopped: ". Where it is empty, the sentence is told then, too: its
    /// action is what makes refreshing go on.
    const char* reason;
};

const QList<Row>& rows()
{
    static const QList<Row> table = {
        {Kind::NotModified, "", {}, QT_TRANSLATE_NOOP("Notice", "%1 has nothing newer.")},
        {Kind::Incomplete,
         QT_TRANSLATE_NOOP("Notice", "The picture is incomplete: the connection broke."),
         {Action::TryAgain},
         QT_TRANSLATE_NOOP("Notice", "the connection broke.")},
        {Kind::Moved,
         QT_TRANSLATE_NOOP("Notice", "This camera has moved to %2."),
         {Action::UseNewAddress},
         ""},
        {Kind::PointsElsewhere,
         QT_TRANSLATE_NOOP("Notice", "%1 points to %2."),
         {Action::Follow},
         ""},
        {Kind::Circle,
         QT_TRANSLATE_NOOP("Notice", "%1 redirects in a circle."),
         {Action::TryAgain},
         QT_TRANSLATE_NOOP("Notice", "%1 redirects in a circle.")},
        {Kind::SignInWanted,
         QT_TRANSLATE_NOOP("Notice", "%1 wants a name and password."),
         {Action::SignIn},
         ""},
        {Kind::Refused,
         QT_TRANSLATE_NOOP("Notice", "%1 answered \"%3\"."),
         {Action::TryAgain, Action::EditCamera},
         QT_TRANSLATE_NOOP("Notice", "%1 answered \"%3\".")},
        {Kind::NotAPicture,
         QT_TRANSLATE_NOOP("Notice", "%1 sent %4, not a picture."),
         {Action::OpenInBrowser, Action::TryAgain},
         QT_TRANSLATE_NOOP("Notice", "%1 sent %4, not a picture.")},
        {Kind::Failed,
         QT_TRANSLATE_NOOP("Notice", "%1 cannot be reached: %3."),
         {Action::TryAgain},
         QT_TRANSLATE_NOOP("Notice", "%1 cannot be reached (%3).")},
        {Kind::NoAnswer,
         QT_TRANSLATE_NOOP("Notice", "%1 does not answer."),
         {Action::TryAgain},
         QT_TRANSLATE_NOOP("Notice", "%1 does not answer.")},
        {Kind::BadAddress, "%3", {Action::EditCamera}, ""},
    };
    return table;
}

struct ActionRow
{
    Action action;
    const char* caption;
};

const char* captionOf(Action action)
{
    static constexpr ActionRow captions[] = {
        {Action::KeepRefreshing, QT_TRANSLATE_NOOP("Notice", "Keep Refreshing")},
        {Action::Resume, QT_TRANSLATE_NOOP("Notice", "Resume")},
        {Action::UseNewAddress, QT_TRANSLATE_NOOP("Notice", "Use New Address")},
        {Action::Follow, QT_TRANSLATE_NOOP("Notice", "Follow")},
        {Action::SignIn, QT_TRANSLATE_NOOP("Notice", "Sign In...")},
        {Action::TryAgain, QT_TRANSLATE_NOOP("Notice", "Try Again")},
        {Action::EditCamera, QT_TRANSLATE_NOOP("Notice", "Edit Camera...")},
        {Action::OpenInBrowser, QT_TRANSLATE_NOOP("Notice", "Open in Browser")},
        {Action::Undo, QT_TRANSLATE_NOOP("Notice", "Undo")},
        {Action::Show, QT_TRANSLATE_NOOP("Notice", "Show")},
        {Action::OpenFolder, QT_TRANSLATE_NOOP("Notice", "Open Folder")},
        {Action::OfferAgain, QT_TRANSLATE_NOOP("Notice", "Try Again")},
    };
    for (const auto& row : captions) {
        if (row.action == action)
            return row.caption;
    }
    return "";
}

QString translated(const char* text)
{
    return QCoreApplication::translate("Notice", text);
}

QString nameOf(FetchOutcome::Sent sent)
{
    switch (sent) {
    case FetchOutcome::Sent::WebPage:
        return translated(QT_TRANSLATE_NOOP("Notice", "a web page"));
    case FetchOutcome::Sent::Text:
        return translated(QT_TRANSLATE_NOOP("Notice", "text"));
    case FetchOutcome::Sent::Video:
        return translated(QT_TRANSLATE_NOOP("Notice", "a video"));
    case FetchOutcome::Sent::Nothing:
        return translated(QT_TRANSLATE_NOOP("Notice", "an empty answer"));
    case FetchOutcome::Sent::SomethingElse:
        break;
    }
    return translated(QT_TRANSLATE_NOOP("Notice", "something else"));
}

/// Of a text from outside, what a sentence has room for: its beginning and its end.
QString shortened(const QString& text)
{
    constexpr qsizetype Longest = 80;
    const QString line = shownLine(text);
    if (line.size() <= Longest)
        return line;
    return line.left(Longest / 2) + u'…' + line.right(Longest / 2 - 1);
}

/// Qt's reasons have a full stop now and then; the sentence has its own.
QString withoutFullStop(QString reason)
{
    while (reason.endsWith(u'.'))
        reason.chop(1);
    return reason;
}

/// `text` with %1 to %4 replaced by `values`, in one pass: none of them fills another's place.
QString filledIn(const QString& text, const QStringList& values)
{
    QString filled;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const int number = text[i] == u'%' ? text.mid(i + 1, 1).toInt() : 0;
        if (number < 1 || number > values.size()) {
            filled += text[i];
            continue;
        }
        filled += values[number - 1];
        ++i;
    }
    return filled;
}

QList<Notice::Button> buttonsOf(const QList<Action>& actions)
{
    QList<Notice::Button> buttons;
    for (const Action action : actions)
        buttons.append({static_cast<int>(action), translated(captionOf(action))});
    return buttons;
}

Notice::Message information(const QString& sentence, const QList<Action>& actions)
{
    return {Notice::Icon::Information, sentence, buttonsOf(actions)};
}

} // namespace

Notice::Message noticeOf(const FetchOutcome& outcome, bool isStalled, bool isListed)
{
    const auto filled = [&outcome](const char* text) {
        const QString reason =
            outcome.kind == Kind::Failed ? withoutFullStop(outcome.text) : outcome.text;
        return filledIn(translated(text), {shortened(outcome.host), shortened(outcome.address),
                                           shortened(reason), nameOf(outcome.sent)});
    };
    for (const Row& row : rows()) {
        if (row.kind != outcome.kind)
            continue;
        if (isStalled && *row.reason)
            return {Notice::Icon::Warning,
                    translated(QT_TRANSLATE_NOOP("Notice", "Refreshing has stopped: %1"))
                        .arg(filled(row.reason)),
                    buttonsOf({Action::KeepRefreshing, Action::Resume})};
        if (!*row.sentence)
            return {};
        QList<Action> actions = row.actions;
        if (!isListed)
            actions.removeAll(Action::EditCamera);
        return {Notice::Icon::Warning, filled(row.sentence), buttonsOf(actions)};
    }
    return {};
}

Notice::Message noticeOfRemoval(const QString& name)
{
    return information(
        translated(QT_TRANSLATE_NOOP("Notice", "Removed \"%1\".")).arg(shortened(name)),
        {Action::Undo});
}

Notice::Message noticeOfReload(qsizetype cameras)
{
    const QString sentence =
        cameras == 1
            ? translated(QT_TRANSLATE_NOOP("Notice", "The list was loaded again: 1 camera."))
            : translated(QT_TRANSLATE_NOOP("Notice", "The list was loaded again: %1 cameras."))
                  .arg(cameras);
    return information(sentence, {Action::Undo});
}

Notice::Message noticeOfAddition(qsizetype added, qsizetype refused)
{
    QString sentence = added == 1
                           ? translated(QT_TRANSLATE_NOOP("Notice", "1 camera added"))
                           : translated(QT_TRANSLATE_NOOP("Notice", "%1 cameras added")).arg(added);
    if (refused == 1)
        sentence += translated(QT_TRANSLATE_NOOP("Notice", ", 1 was in the list already"));
    else if (refused > 1)
        sentence +=
            translated(QT_TRANSLATE_NOOP("Notice", ", %1 were in the list already")).arg(refused);
    return information(sentence + u'.', added > 0 ? QList{Action::Show} : QList<Action>());
}

Notice::Message noticeOfFailedOffers(const QStringList& names, const QString& reason)
{
    const bool isOne = names.size() == 1;
    const QString sentence = translated(
        isOne
            ? QT_TRANSLATE_NOOP("Notice", "\"%1\" could not be added to the internet database: %2.")
            : QT_TRANSLATE_NOOP("Notice",
                                "%1 cameras could not be added to the internet database: %2."));
    const QString which = isOne ? shortened(names.first()) : QString::number(names.size());
    return {Notice::Icon::Warning, sentence.arg(which, shortened(withoutFullStop(reason))),
            buttonsOf({Action::OfferAgain})};
}

Notice::Message noticeOfSave(const QString& path, const QString& reason)
{
    const QString name = shortened(QFileInfo(path).fileName());
    if (reason.isEmpty())
        return information(translated(QT_TRANSLATE_NOOP("Notice", "Saved \"%1\".")).arg(name),
                           {Action::OpenFolder});
    return {Notice::Icon::Warning,
            translated(QT_TRANSLATE_NOOP("Notice", "\"%1\" was not saved: %2."))
                .arg(name, shortened(withoutFullStop(reason))),
            {}};
}

Notice::Message noticeOfKeptList(const QString& path)
{
    return {Notice::Icon::Warning,
            translated(QT_TRANSLATE_NOOP("Notice", "Another window changed the list, too: its list "
                                                   "is kept as \"%1\"."))
                .arg(shortened(QFileInfo(path).fileName())),
            buttonsOf({Action::OpenFolder})};
}
