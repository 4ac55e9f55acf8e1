#include "camlist/MergedLists.h"
#include "camlist/MergedOrder.h"
#include "support/Rows.h"

#include <QRandomGenerator>
#include <QSet>

#include <algorithm>

namespace {

constexpr quint32 Seed = 20261122;

/// "key" or "key=name" or "key=name/category", blanks between.
QList<CameraRecord> cameras(const QString& text)
{
    QList<CameraRecord> list;
    for (const QString& one : text.split(' ', Qt::SkipEmptyParts)) {
        const QString rest = one.section('=', 1);
        const QString category = rest.section('/', 1);
        list.append(
            {category.isEmpty() ? "C" : category, rest.section('/', 0, 0), one.section('=', 0, 0)});
    }
    return list;
}

QString shown(const QList<CameraRecord>& list)
{
    QStringList texts;
    for (const CameraRecord& one : list) {
        QString text = one.key;
        if (!one.name.isEmpty() || one.category != "C")
            text += '=' + one.name;
        if (one.category != "C")
            text += '/' + one.category;
        texts << text;
    }
    return texts.join(' ');
}

QSet<QString> keysOf(const QList<CameraRecord>& list)
{
    QSet<QString> keys;
    for (const CameraRecord& one : list)
        keys.insert(one.key);
    return keys;
}

/// The name that each of `lists` has for the camera of `key`; empty where it is not there.
QStringList namesOf(const QString& key, const QList<QList<CameraRecord>>& lists)
{
    QStringList names;
    for (const auto& list : lists) {
        const auto found = std::find_if(list.begin(), list.end(),
                                        [&key](const auto& one) { return one.key == key; });
        names << (found == list.end() ? QString() : found->name);
    }
    return names;
}

QList<Favourite> favourites(const QString& text)
{
    QList<Favourite> list;
    for (const QString& one : text.split(' ', Qt::SkipEmptyParts))
        list.append({one.section('=', 1), one.section('=', 0, 0)});
    return list;
}

QString shown(const QList<Favourite>& list)
{
    QStringList texts;
    for (const Favourite& one : list)
        texts << one.key + '=' + one.name;
    return texts.join(' ');
}

/// What a person may do to a list, some times.
QList<CameraRecord> changed(QList<CameraRecord> list, QRandomGenerator& random)
{
    const auto text = [&random](char first, int many) {
        return first + QString::number(random.bounded(many));
    };
    for (int times = random.bounded(6); times > 0; --times) {
        const qsizetype at = list.isEmpty() ? 0 : random.bounded(int(list.size()));
        switch (random.bounded(5)) {
        case 0:
            list.append({text('c', 3), text('n', 3), text('k', 30)});
            break;
        case 1:
            if (!list.isEmpty())
                list.removeAt(at);
            break;
        case 2:
            if (!list.isEmpty())
                list[at].name = text('n', 3);
            break;
        case 3:
            if (!list.isEmpty())
                list.move(at, random.bounded(int(list.size())));
            break;
        default:
            if (!list.isEmpty())
                list[at].key = text('k', 30);
        }
    }
    // No list has a key twice.
    QSet<QString> seen;
    list.removeIf([&seen](const CameraRecord& one) {
        const bool isThere = seen.contains(one.key);
        seen.insert(one.key);
        return isThere;
    });
    return list;
}

} // namespace

class MergedListsTest : public QObject
{
    Q_OBJECT
private slots:
    void twoListsBecomeOne_data()
    {
        const Rows<QString, QString, QString, QString, bool> row("base", "mine", "theirs", "merged",
                                                                 "isConflict");
        row("nothing changed", "a b c", "a b c", "a b c", "a b c", false);
        row("nothing at all", "", "", "", "", false);
        row("both added", "a b", "a b x", "a b y", "a b y x", false);
        row("both added the same", "a", "a x=n", "a x=n", "a x=n", false);
        row("both added one key", "a", "a x=n", "a x=m", "a x=n", true);
        row("both removed", "a b c", "a c", "a b", "a", false);
        row("both removed the same", "a b c", "a c", "a c", "a c", false);
        row("one removed all", "a b", "", "a b", "", false);
        row("one removed all, one added", "a b", "", "a b y", "y", false);
        row("others removed all, one added", "a b", "a b x", "", "x", false);
        row("one of another list", "a b", "a b x", "y", "y x", false);
        row("without a base", "", "a x", "a y", "a y x", false);
        row("my name", "a=1", "a=2", "a=1", "a=2", false);
        row("their name", "a=1", "a=1", "a=2", "a=2", false);
        row("two names", "a=1", "a=2", "a=3", "a=2", true);
        row("one name twice", "a=1", "a=2", "a=2", "a=2", false);
        row("my name, their category", "a=1/C", "a=2/C", "a=1/D", "a=2/D", false);
        row("two categories", "a=1/C", "a=1/D", "a=1/E", "a=1/D", true);
        row("removed here, renamed there", "a=1 b", "b", "a=2 b", "a=2 b", false);
        row("renamed here, removed there", "a=1 b", "a=2 b", "b", "a=2 b", false);
        row("one key became two", "a b", "x b", "y b", "x y b", false);
        row("my order", "a b c", "c a b", "a b c", "c a b", false);
        row("their order", "a b c", "a b c", "c a b", "c a b", false);
        row("moved here, added there", "a b c", "b c a", "a b c y", "b c y a", false);
        row("sorted here, removed there", "c b a", "a b c", "c a", "a c", false);
        row("edited here as the window does it", "a=1 b c", "b c a=2", "a=1 b c y", "b c y a=2",
            false);
        row("inserted here", "a b", "a x b", "a b y", "a x b y", false);
        row("a key twice", "a", "a a=2", "a y y=2", "a y", false);
        row("a key that is their category", "a", "a D", "a b=1/D", "a b=1/D D", true);
    }

    void twoListsBecomeOne()
    {
        QFETCH(QString, base);
        QFETCH(QString, mine);
        QFETCH(QString, theirs);
        const MergedList result = mergedLists(cameras(base), cameras(mine), cameras(theirs));
        QTEST(shown(result.cameras), "merged");
        QTEST(result.isConflict, "isConflict");
    }

    void favouritesBecomeOneList_data()
    {
        const Rows<QString, QString, QString, QString> row("base", "mine", "theirs", "merged");
        row("nothing changed", "a=1 a=1", "a=1 a=1", "a=1 a=1", "a=1 a=1");
        row("both added", "a=1", "a=1 x=1", "a=1 y=1", "a=1 y=1 x=1");
        row("the same again", "a=1", "a=1 a=1", "a=1", "a=1 a=1");
        row("one of two removed", "a=1 a=1", "a=1", "a=1 a=1 y=1", "a=1 y=1");
        row("another name of one camera", "a=1", "a=1 a=2", "a=1 a=3", "a=1 a=3 a=2");
        row("two new keys", "a=1", "x=1", "y=1", "y=1 x=1");
        row("sorted here", "c=1 b=1 a=1", "a=1 b=1 c=1", "c=1 b=1 a=1 y=1", "a=1 b=1 c=1 y=1");
        row("not whole", "a=1", "a=1 b= =2", "c= a=1", "a=1");
    }

    void favouritesBecomeOneList()
    {
        QFETCH(QString, base);
        QFETCH(QString, mine);
        QFETCH(QString, theirs);
        QTEST(shown(mergedFavourites(favourites(base), favourites(mine), favourites(theirs))),
              "merged");
    }

    /// Of any two changes of any list.
    void nothingIsLost()
    {
        QRandomGenerator random(Seed);
        qInfo("seed %u", Seed);
        int conflicts = 0;
        for (int i = 0; i < 20'000; ++i) {
            const auto base = changed(changed({}, random), random);
            const auto mine = changed(base, random);
            const auto theirs = changed(base, random);
            const MergedList result = mergedLists(base, mine, theirs);
            const auto told = qPrintable(shown(base) + " | " + shown(mine) + " | " + shown(theirs) +
                                         " | " + shown(result.cameras));
            const QSet<QString> old = keysOf(base);
            const QSet<QString> ours = keysOf(mine);
            const QSet<QString> others = keysOf(theirs);
            const QSet<QString> merged = keysOf(result.cameras);
            QVERIFY2(merged.size() == result.cameras.size(), told); // no key twice
            QVERIFY2(merged.contains(ours & others), told);
            QVERIFY2(merged.contains(ours - old), told);
            QVERIFY2(merged.contains(others - old), told);
            QVERIFY2((ours | others).contains(merged), told); // nothing comes back
            for (const CameraRecord& one : base) {
                const bool isLeft = ours.contains(one.key) != others.contains(one.key);
                const bool isUntouched = mine.contains(one) || theirs.contains(one);
                QVERIFY2(!isLeft || merged.contains(one.key) != isUntouched, told);
            }
            for (const CameraRecord& one : result.cameras) {
                const QStringList names = namesOf(one.key, {base, mine, theirs});
                const QString& other = names[0] == names[1] ? names[2] : names[1];
                QVERIFY2(!ours.contains(one.key) || !others.contains(one.key) || one.name == other,
                         told);
            }
            conflicts += result.isConflict;
            // One side alone is as it is.
            QVERIFY2(mergedLists(base, mine, base).cameras == mine, told);
            QVERIFY2(mergedLists(base, base, theirs).cameras == theirs, told);
            QVERIFY2(mergedLists(base, mine, mine).cameras == mine, told);
            QVERIFY2(!mergedLists(base, mine, base).isConflict, told);
            // Merged again with either side, nothing changes any more.
            const auto again = mergedLists(theirs, result.cameras, theirs).cameras;
            QVERIFY2(again == result.cameras, told);
        }
        QVERIFY(conflicts > 100); // and not only them
        QVERIFY(conflicts < 10'000);
    }

    void anOrderHasEveryNameOnce()
    {
        QRandomGenerator random(Seed);
        const auto anyNames = [&random] {
            QStringList names;
            for (int left = random.bounded(12); left > 0; --left)
                names << QString::number(random.bounded(15));
            names.removeDuplicates();
            std::shuffle(names.begin(), names.end(), random);
            return names;
        };
        for (int i = 0; i < 20'000; ++i) {
            const QStringList base = anyNames();
            const QStringList mine = anyNames();
            const QStringList theirs = anyNames();
            QStringList all = mine + theirs;
            all.removeDuplicates();
            all.sort();
            QStringList order = mergedOrder(base, mine, theirs);
            order.sort();
            QCOMPARE(order, all);
        }
    }
};

QTEST_GUILESS_MAIN(MergedListsTest)
#include "tst_MergedLists.moc"
