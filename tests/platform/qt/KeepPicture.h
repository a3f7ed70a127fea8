#pragma once
// Pictures that tests render are kept for a person to look at only when asked: with the
// environment variable QV_WRITE_PICTURES naming a folder, they are written there as PNG files.

#include "qv/foundation/QLBitmap.h"
#include "qv/platform/qt/QLQtImage.h"

#include <QDir>
#include <QString>

#include <cstdlib>

namespace qvtest {

inline void KeepPicture(const qv::TQLBitmap& ABitmap, const char* AFileName)
{
    const char* Folder = std::getenv("QV_WRITE_PICTURES");
    if (!Folder || !*Folder)
        return;
    QDir().mkpath(QString::fromLocal8Bit(Folder));
    qv::qt::QLSaveBitmapPng(ABitmap, QDir(QString::fromLocal8Bit(Folder)).filePath(AFileName));
}

} // namespace qvtest
