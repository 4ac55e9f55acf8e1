// The movie file's parts: put together, and found again whatever the chunks.
#include "support/Rows.h"
#include "viewer/movie/MovieFile.h"

namespace {

/// A part that is long enough.
const QByteArray A = "AAAAAAAAAAAAAAAA";
const QByteArray B = "BBBBBBBBBBBBBBBBBBBBBBB";
const QByteArray C = "CCCCCCCCCCCCCCCCCCCC";

QByteArrayList partsOf(const QByteArray& file, qint64 chunkBytes = MovieScan::DefaultChunkBytes)
{
    MovieScan scan(file.size(), chunkBytes);
    for (int chunks = 0; !scan.isDone(); ++chunks) {
        if (chunks > file.size() || scan.count() > chunkBytes || scan.count() < 1)
            return {"no end, or a wrong chunk"};
        scan.take(QByteArrayView(file).sliced(scan.position(), scan.count()));
    }
    QByteArrayList parts;
    for (const MoviePart& part : scan.parts())
        parts += file.mid(part.begin, part.size);
    return parts;
}

} // namespace

class MovieFileTest : public QObject
{
    Q_OBJECT
private slots:
    void framesAreJoinedByTheSeparatorAlone()
    {
        QByteArray movie;
        appendMovieFrame(movie, "one");
        QCOMPARE(movie, QByteArray("one"));
        appendMovieFrame(movie, QByteArray("t\0o", 3));
        appendMovieFrame(movie, "three");
        QCOMPARE(movie, QByteArray("one&IMAGE&t\0o&IMAGE&three", 25));
    }

    void partsAreFoundInAnyChunks_data()
    {
        const Rows<QByteArray, QByteArrayList> row("file", "parts");
        const QByteArray s = "&IMAGE&";
        row("one frame", A, {A});
        row("three", A + s + B + s + C, {A, B, C});
        row("looks nearly like one", A + "&IMAG&&IMAGE-" + s + B + "&image&",
            {A + "&IMAG&&IMAGE-", B + "&image&"});
        // The first of two that overlap counts.
        row("overlapping", A + "&IMAGE&IMAGE&" + B, {A, "IMAGE&" + B});
        row("at the end", A + s, {A, ""});
        row("at the beginning", s + A, {""});
        row("twice", A + s + s + B, {A, ""});
        row("inside a frame", A + s + B + s + B, {A, B, B});
        row("zeros and high bytes", QByteArray(16, '\0') + s + QByteArray(20, '\xFF'),
            {QByteArray(16, '\0'), QByteArray(20, '\xFF')});
    }

    void partsAreFoundInAnyChunks()
    {
        QFETCH(QByteArray, file);
        QFETCH(QByteArrayList, parts);
        QCOMPARE(partsOf(file), parts);
        for (qint64 chunkBytes = 8; chunkBytes <= file.size() + 1; ++chunkBytes)
            QCOMPARE(partsOf(file, chunkBytes), parts);
    }

    void aCutAtAnyByteOfASeparatorLeavesThatMuchInThePart_data()
    {
        const Rows<int> row("kept");
        for (int kept = 0; kept <= MovieSeparator.size(); ++kept)
            row(std::to_string(kept) + " bytes of it", kept);
    }

    void aCutAtAnyByteOfASeparatorLeavesThatMuchInThePart()
    {
        QFETCH(int, kept);
        const QByteArray piece = MovieSeparator.first(kept).toByteArray();
        const bool whole = kept == MovieSeparator.size();
        const QByteArrayList atTheEnd =
            whole ? QByteArrayList{A, B, ""} : QByteArrayList{A, B + piece};
        const QByteArrayList inTheMiddle =
            whole ? QByteArrayList{A, B} : QByteArrayList{A + piece + B};
        for (qint64 chunkBytes = 8; chunkBytes < 64; ++chunkBytes) {
            QCOMPARE(partsOf(A + "&IMAGE&" + B + piece, chunkBytes), atTheEnd);
            QCOMPARE(partsOf(A + piece + B, chunkBytes), inTheMiddle);
        }
    }

    void anEmptyFileHasNoParts()
    {
        MovieScan scan(0);
        QVERIFY(scan.isDone());
        QVERIFY(scan.parts().empty());
    }

    void aPartThatIsTooShortIsTheLast()
    {
        const QByteArray shortest(MoviePart::MinBytes, 's');
        const QByteArray tooShort(MoviePart::MinBytes - 1, 's');
        QCOMPARE(partsOf(A + "&IMAGE&" + shortest + "&IMAGE&" + B),
                 QByteArrayList({A, shortest, B}));
        QCOMPARE(partsOf(A + "&IMAGE&" + tooShort + "&IMAGE&" + B), QByteArrayList({A, tooShort}));
    }

    void aPartThatIsTooLongEndsTheSearch()
    {
        // No byte of the second part is a separator's, however long it is.
        constexpr qint64 fileBytes = 1LL << 40;
        MovieScan scan(fileBytes);
        QByteArray chunk = A + "&IMAGE&";
        chunk.resize(scan.count(), 'x');
        qint64 taken = 0;
        while (!scan.isDone() && taken < 10 * Still::MaxEncodedBytes) {
            QCOMPARE(scan.count(), MovieScan::DefaultChunkBytes);
            scan.take(chunk);
            taken += chunk.size();
            chunk.fill('x');
        }
        QVERIFY(scan.isDone());
        QVERIFY(taken < Still::MaxEncodedBytes + 3 * MovieScan::DefaultChunkBytes);
        QCOMPARE(scan.parts().size(), 2u);
        QVERIFY(scan.parts().front().mayBePicture());
        QVERIFY(!scan.parts().back().mayBePicture());

        // The longest picture is none too long.
        const QByteArray longest(Still::MaxEncodedBytes, 'x');
        QCOMPARE(partsOf(A + "&IMAGE&" + longest + "&IMAGE&" + B), QByteArrayList({A, longest, B}));
    }

    void aFileOfSeparatorsIsNotSearchedThrough()
    {
        QByteArray chunk;
        while (chunk.size() < MovieScan::DefaultChunkBytes)
            chunk += MovieSeparator;
        chunk.truncate(MovieScan::DefaultChunkBytes);
        MovieScan scan(1LL << 40);
        scan.take(chunk);
        QVERIFY(scan.isDone());
        QCOMPARE(scan.parts().size(), 1u);
    }
};

QTEST_GUILESS_MAIN(MovieFileTest)
#include "tst_MovieFile.moc"
