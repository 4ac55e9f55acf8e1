#include "support/Cost.h"

#include "picture/Still.h"
#include "support/OddPictures.h"

#include <algorithm>
#include <ctime>

namespace {

constexpr int Runs = 3;

double secondsOf(const std::function<void()>& work)
{
    const std::clock_t before = std::clock();
    work();
    return double(std::clock() - before) / CLOCKS_PER_SEC;
}

} // namespace

const QByteArray& twelveMegapixels()
{
    static const QByteArray bytes = odd::encoded(odd::scenery({4'000, 3'000}), "jpg");
    return bytes;
}

void decodeTwelveMegapixels()
{
    if (Still::fromBytes(twelveMegapixels()).isNull())
        qFatal("no picture");
}

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

double costOf(const std::function<void()>& work)
{
    QList<double> costs;
    for (int i = 0; i < Runs; ++i)
        costs << secondsOf(work);
    return median(costs);
}

double timesTheCost(const std::function<void()>& work, const std::function<void()>& reference)
{
    QList<double> ofWork;
    QList<double> ofReference;
    for (int i = 0; i < Runs; ++i) {
        ofReference << secondsOf(reference);
        ofWork << secondsOf(work);
    }
    return median(ofWork) / median(ofReference);
}

double growth(int items, const std::function<void(int)>& work)
{
    static const double least = costOf(decodeTwelveMegapixels) / 100;
    QList<double> few;
    QList<double> many;
    double times = 0;
    do {
        few << secondsOf([&] { work(items); });
        many << secondsOf([&] { work(10 * items); });
        times = std::max(median(many), least) / std::max(median(few), least);
    } while (times > MostGrowth / 2 && many.size() < Runs);
    return times;
}
