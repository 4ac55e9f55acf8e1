// The nodes of the camera tree: their order, their keys, and how they are searched.

#include "camlist/CameraTreeModel.h"
#include "support/Rows.h"

#include <QAbstractItemModelTester>

#include <algorithm>
#include <memory>
#include <optional>

class CameraTreeModelTest : public QObject
{
    Q_OBJECT
private slots:
    void init() { tree = std::make_unique<CameraTreeModel>(); }

    void aKeyIsFoundWithAndWithoutItsScheme()
    {
        const QModelIndex one = tree->add({"Sights", "One", "http://host/1.jpg"});
        const QModelIndex two = tree->add({"Sights", "Two", "host/2.jpg\1Cookie: a=1"});
        QCOMPARE(tree->find("host/1.jpg"), one);
        QCOMPARE(tree->find("HTTP://host/1.jpg"), one);
        QCOMPARE(tree->find("http://host/2.jpg\1Cookie: a=1"), two);
        // Another header, another scheme, and a category are another thing.
        for (const char* other : {"host/2.jpg", "https://host/1.jpg", "Sights", ""})
            QVERIFY(!tree->find(other).isValid());
    }

    void aCameraGetsAnotherKey()
    {
        const QModelIndex one = tree->add({"Sights", "One", "host/1.jpg"});
        tree->add({"Sights", "Two", "host/2.jpg"});
        QSignalSpy changed(tree.get(), &CameraTreeModel::dataChanged);
        QVERIFY(tree->setKey(one, "host/3.jpg"));
        QCOMPARE(changed.count(), 1);
        QCOMPARE(tree->record(one), (CameraRecord{"Sights", "One", "host/3.jpg"}));
        QCOMPARE(tree->find("host/3.jpg"), one);
        // The old key is free, the new one taken.
        QVERIFY(!tree->add({"Sights", "Three", "host/3.jpg"}).isValid());
        QVERIFY(tree->add({"Sights", "Three", "host/1.jpg"}).isValid());
        QVERIFY(!tree->setKey(one, "host/2.jpg"));
        QVERIFY(!tree->setKey(one, "Sights"));
        QVERIFY(!tree->setKey(one.parent(), "host/4.jpg"));
        QVERIFY(!tree->setKey({}, "host/4.jpg"));
        QCOMPARE(tree->record(one).key, "host/3.jpg");
    }

    void camerasAreChildrenOfTheirCategory()
    {
        const QModelIndex tower = tree->add({"Sights", "Tower", "host/t.jpg\1Cookie: a=1"});
        QVERIFY(tower.isValid());
        QVERIFY(CameraTreeModel::isCamera(tower));
        QVERIFY(!CameraTreeModel::isCamera(tower.parent()));
        QCOMPARE(tree->rowCount(), 1);
        QCOMPARE(tree->rowCount(tower.parent()), 1);
        QCOMPARE(tree->record(tower), (CameraRecord{"Sights", "Tower", "host/t.jpg\1Cookie: a=1"}));
        QCOMPARE(tree->record(tower.parent()), (CameraRecord{"Sights", "Sights", "Sights"}));
        QCOMPARE(tree->record({}), CameraRecord());
        QCOMPARE(tower.data(Qt::DecorationRole).value<QIcon>().name(), "camera");
        QCOMPARE(tower.parent().data(Qt::DecorationRole).value<QIcon>().name(), "category");
    }

    void theOrderOfAddingIsKeptOverAllCategories()
    {
        tree->add({"B", "first", "1"});
        tree->add({"A", "second", "2"});
        tree->add({"B", "third", "3"});
        QCOMPARE(names(), QStringList({"first", "second", "third"}));
        QCOMPARE(tree->categories(), QStringList({"B", "A"}));
        // On screen the third stands below the first.
        QCOMPARE(tree->index(1, 0, tree->index(0, 0)).data(), "third");
    }

    void aKeyIsThereOnce_data()
    {
        const Rows<CameraRecord, bool, QStringList> row("camera", "added", "categories");
        const QStringList before = {"Cities"};
        row("another key", CameraRecord{"Cities", "Other", "host/b.jpg"}, true, before);
        row("the same key", CameraRecord{"Cities", "Other", "host/a.jpg"}, false, before);
        row("the same address with a header", CameraRecord{"Cities", "Other", "host/a.jpg\1X: 1"},
            true, before);
        row("in another category, which stays", CameraRecord{"Sights", "Other", "host/a.jpg"},
            false, {"Cities", "Sights"});
        row("named like a category", CameraRecord{"Cities", "Other", "Cities"}, false, before);
        row("a category named like a key", CameraRecord{"host/a.jpg", "Other", "host/b.jpg"}, false,
            before);
        row("named like its own category", CameraRecord{"New", "Other", "New"}, false,
            {"Cities", "New"});
        row("in other letters", CameraRecord{"Cities", "Other", "HOST/a.jpg"}, true, before);
    }

    void aKeyIsThereOnce()
    {
        QFETCH(CameraRecord, camera);
        QFETCH(bool, added);
        tree->add({"Cities", "Harbour", "host/a.jpg"});
        QCOMPARE(tree->add(camera).isValid(), added);
        QCOMPARE(tree->cameras().size(), added ? 2 : 1);
        QTEST(tree->categories(), "categories");
    }

    void categoriesDifferByCase()
    {
        tree->add({"Cities", "a", "1"});
        tree->add({"cities", "b", "2"});
        QCOMPARE(tree->categories(), QStringList({"Cities", "cities"}));
    }

    void aRemovedKeyIsFree()
    {
        tree->add({"Cities", "a", "1"});
        tree->remove(node("a"));
        QVERIFY(tree->add({"Cities", "b", "1"}).isValid());
        tree->remove(node("Cities"));
        QVERIFY(tree->add({"1", "c", "Cities"}).isValid());
    }

    void removingACategoryRemovesItsCameras()
    {
        for (int i = 0; i < 9; ++i)
            tree->add({QString("C%1").arg(i % 3), QString("n%1").arg(i), QString::number(i)});
        tree->remove(node("C1"));
        QCOMPARE(names(), QStringList({"n0", "n2", "n3", "n5", "n6", "n8"}));
        QCOMPARE(tree->categories(), QStringList({"C0", "C2"}));
        QCOMPARE(found("n4"), "");
        // Those behind have moved up.
        tree->remove(node("n2"));
        QCOMPARE(tree->index(0, 0, node("C2")).data(), "n5");
        QCOMPARE(node("n5").row(), 0);
        tree->remove({});
        QCOMPARE(tree->cameras().size(), 5);
    }

    void anEmptyCategoryStays()
    {
        tree->add({"Cities", "a", "1"});
        tree->remove(node("a"));
        QCOMPARE(tree->categories(), QStringList("Cities"));
        QVERIFY(tree->cameras().isEmpty());
    }

    void replacingCountsWhatWasRefused()
    {
        tree->add({"Old", "old", "0"});
        QCOMPARE(replaceAll({{"A", "a", "1"}, {"A", "b", "1"}, {"A", "c", "2"}, {"B", "d", "2"}}),
                 2);
        QCOMPARE(names(), QStringList({"a", "c"}));
        QCOMPARE(found("o"), "");
        QCOMPARE(found("c"), "c");
        QCOMPARE(replaceAll({}), 0);
        QCOMPARE(tree->rowCount(), 0);
    }

    void aSeparatorInATextBecomesWhatLooksTheSame()
    {
        const QString y = QStringLiteral("\u00FF");
        const QString same = QStringLiteral("y\u0308");
        tree->add({"C" + y, "N" + y, "K" + y});
        QCOMPARE(tree->cameras().value(0), (CameraRecord{"C" + same, "N" + same, "K" + same}));
        QVERIFY(!tree->add({"C", "N", "K" + y}).isValid());
    }

    void namesAreSearchedInTheOrderOfAdding_data()
    {
        const Rows<QString, QString> row("typed", "name");
        row("nothing", "", "");
        row("the start of a name", "new", "NewYork, NY");
        row("in capitals", "NEWY", "NewYork, NY");
        row("a whole name", "miami, fl", "Miami, FL");
        row("more than a name", "Miami, FLO", "");
        row("the middle of a name", "ork", "");
        row("the first of two", "mi", "Miami, FL");
        row("a category with cameras", "Cit", "");
        row("umlauts without regard to case", QStringLiteral("z\u00DC"),
            QStringLiteral("Z\u00FCrich"));
        row("Greek without regard to case", QStringLiteral("\u03B1\u0398"),
            QStringLiteral("\u0391\u03B8\u03AE\u03BD\u03B1"));
        row("letters beyond the first plane", QStringLiteral("\U00010428"),
            QStringLiteral("\U00010400x"));
        row("a separator", QStringLiteral("Miami, FL\u00FF"), "");
        row("a capital separator", QStringLiteral("Miami, FL\u0178"), "");
    }

    void namesAreSearchedInTheOrderOfAdding()
    {
        QFETCH(QString, typed);
        int key = 0;
        for (const QString& name :
             {QStringLiteral("NewYork, NY"), QStringLiteral("Miami, FL"), QStringLiteral("Milano"),
              QStringLiteral("Z\u00FCrich"), QStringLiteral("\u0391\u03B8\u03AE\u03BD\u03B1"),
              QStringLiteral("\U00010400x")})
            tree->add({"Cities", name, QString::number(key++)});
        QTEST(found(typed), "name");
    }

    void anEmptyCategoryIsFoundToo()
    {
        tree->add({"Cities", "a", "1"});
        tree->add({"Sights", "Citadel", "2"});
        QCOMPARE(found("Cit"), "Citadel");
        tree->remove(node("a"));
        QCOMPARE(found("Cit"), "Cities");
        QCOMPARE(tree->record(tree->firstMatch("Cit")).key, "Cities");
    }

    /// All names lie in one text for the search; none may be found across the end of another.
    void searchingIsThatOfEachNameAlone()
    {
        const quint32 seed = 20261121;
        QRandomGenerator random(seed);
        const QString letters = QStringLiteral("aAbB\u00E4\u00C4yY\u0178");
        const auto word = [&](int longest) {
            QString text;
            for (int i = random.bounded(longest + 1); i > 0; --i)
                text.append(letters[random.bounded(letters.size())]);
            return text;
        };
        for (int i = 0; i < 300; ++i) {
            tree->add({"C" + QString::number(i % 7), word(4), QString::number(i)});
            if (i % 5 == 0)
                tree->remove(tree->index(0, 0, tree->index(random.bounded(tree->rowCount()), 0)));
        }
        for (int i = 0; i < 2000; ++i) {
            const QString typed = word(3);
            QString expected;
            const auto cameras = tree->cameras();
            const auto hit = std::find_if(cameras.begin(), cameras.end(), [&](const auto& camera) {
                return !typed.isEmpty() && camera.name.startsWith(typed, Qt::CaseInsensitive);
            });
            if (hit != cameras.end())
                expected = hit->key;
            QVERIFY2(tree->record(tree->firstMatch(typed)).key == expected,
                     qPrintable(typed + ", seed " + QString::number(seed)));
        }
    }

    void textIsShownOnOneLineAsItStands_data()
    {
        const Rows<QString, QString> row("name", "shown");
        for (const QString& text :
             {QStringLiteral("AT&T"), QStringLiteral("<b>bold</b>"), QStringLiteral("L.A., CA"),
              QStringLiteral("\u05EA\u05DC \u05D0\u05D1\u05D9\u05D1"),
              QStringLiteral("\u6771\u4EAC")})
            row(qPrintable(text), text, text);
        row("10,000 characters", QString(10'000, 'x'), QString(10'000, 'x'));
        row("line breaks", "a\r\nb\nc", "a  b c");
        row("line separators", QStringLiteral("a\u2028b\u2029c\td"), "a b c d");
    }

    void textIsShownOnOneLineAsItStands()
    {
        QFETCH(QString, name);
        const QModelIndex camera = tree->add({"Cities", name, "1"});
        QTEST(camera.data().toString(), "shown");
        QCOMPARE(tree->record(camera).name, name);
    }

    void aToolTipIsNoMarkupAndTellsNoHeader()
    {
        const auto tip = tree->add({"Cities", "<b>AT&T</b>", "host/a.jpg?a&b\1Cookie: secret"})
                             .data(Qt::ToolTipRole);
        QCOMPARE(tree->index(0, 0).data(Qt::ToolTipRole).toString(), "<p>Cities</p>");
        QCOMPARE(tip.toString(), "<p>&lt;b&gt;AT&amp;T&lt;/b&gt;<br>http://host/a.jpg?a&amp;b</p>");
    }

    void theModelKeepsItsPromises()
    {
        const QAbstractItemModelTester tester(
            tree.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
        QSignalSpy inserted(tree.get(), &QAbstractItemModel::rowsInserted);
        QSignalSpy removed(tree.get(), &QAbstractItemModel::rowsRemoved);
        tree->add({"A", "a", "1"});
        QCOMPARE(inserted.size(), 2); // the category, too
        tree->add({"A", "b", "2"});
        tree->add({"B", "b", "2"});
        QCOMPARE(inserted.size(), 4);
        const QPersistentModelIndex b(tree->index(1, 0, tree->index(0, 0)));
        tree->remove(tree->index(0, 0, tree->index(0, 0)));
        QCOMPARE(b.row(), 0);
        QCOMPARE(b.data(), "b");
        tree->remove(tree->index(0, 0));
        QVERIFY(!b.isValid());
        QCOMPARE(removed.size(), 2);
        QSignalSpy reset(tree.get(), &QAbstractItemModel::modelReset);
        replaceAll({{"A", "a", "1"}, {"A", "b", "2"}});
        QCOMPARE(reset.size(), 1);
        QCOMPARE(inserted.size(), 4);
    }

private:
    /// Replaces all by these; how many were refused.
    qsizetype replaceAll(QList<CameraRecord> cameras)
    {
        return tree->replaceAll([&]() -> std::optional<CameraRecord> {
            return cameras.isEmpty() ? std::nullopt : std::optional(cameras.takeFirst());
        });
    }
    QStringList names() const
    {
        QStringList found;
        for (const CameraRecord& camera : tree->cameras())
            found.append(camera.name);
        return found;
    }
    QString found(const QString& typed) const { return tree->record(tree->firstMatch(typed)).name; }
    /// The index of the camera or category with that text; invalid where there is none.
    QModelIndex node(const QString& text) const
    {
        const auto hits = tree->match(tree->index(0, 0), Qt::DisplayRole, text, 1,
                                      Qt::MatchExactly | Qt::MatchRecursive);
        return hits.value(0);
    }

    std::unique_ptr<CameraTreeModel> tree;
};

QTEST_MAIN(CameraTreeModelTest)
#include "tst_CameraTreeModel.moc"
