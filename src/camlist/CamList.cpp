#include "camlist/CamList.h"

#include <QTreeView>

using namespace Qt::Literals::StringLiterals;

CamList::CamList(const QString& folder, QWidget* parent)
    : QWidget(parent)
    , m_tvwCat(new QTreeView(this))
{
    Q_UNUSED(folder);
}

CamList::~CamList() = default;

QString CamList::ReturnUrlViaName(const QString& /*name*/) const
{
    return {};
}

QString CamList::Search(const QString& /*name*/) const
{
    return {};
}

void CamList::Remove() {}

void CamList::LoadFile(const QString& /*path*/) {}

void CamList::SaveFile() {}

void CamList::FillParent(QComboBox* /*combo*/) const {}

void CamList::AddCam(const QString& /*name*/, const QString& /*key*/, const QString& /*category*/)
{
}
