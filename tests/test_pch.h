// Precompiled for every test.
#include <QtCore/QtCore>
#include <QtGui/QtGui>
#include <QtNetwork/QtNetwork>
#include <QtTest/QtTest>
#include <QtWidgets/QtWidgets>

#include <functional>
#include <memory>
#include <optional>
