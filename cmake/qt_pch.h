// Precompiled for every source of the core library: what nearly all of them include anyway.
#include <QtCore/QtCore>
#include <QtGui/QtGui>
#include <QtNetwork/QtNetwork>
#include <QtWidgets/QtWidgets>

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <optional>
