// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tests/kit/globalvalues.h"

#include "app/state/globals.h"
#include "meta/plfbuffer.h"

#include <cstdint>
#include <type_traits>

namespace fixture {

QString RectText(const Rect& r)
{
    QStringList fields;
    for (const int64_t field : {r.left, r.top, r.right, r.bottom, r.width, r.height})
        fields.append(QString::number(field));
    return fields.join(u',');
}

namespace {

template <size_t size> QString MapText(const uint16_t (&map)[size])
{
    QStringList fields;
    for (const uint16_t field : map)
        fields.append(QString::number(field));
    return fields.join(u',');
}

template <typename T> QString ValueText(const T& value)
{
    if constexpr (std::is_pointer_v<T>)
        return value == nullptr ? QStringLiteral("null") : QStringLiteral("set");
    else if constexpr (std::is_array_v<T>)
        return QString::fromLocal8Bit(value);
    else if constexpr (std::is_same_v<T, bool>)
        return value ? QStringLiteral("true") : QStringLiteral("false");
    else
        return QString::number(value);
}

template <size_t size> QString ValueText(const uint16_t (&map)[size])
{
    return MapText(map);
}

Globals PathGlobals()
{
    return {
        {QStringLiteral("gszPlffileOrig"), ValueText(gszPlffileOrig)},
        {QStringLiteral("gszPlffileName"), ValueText(gszPlffileName)},
        {QStringLiteral("gszCurdir"), ValueText(gszCurdir)},
        {QStringLiteral("gszCurrentWorkingDir"), ValueText(gszCurrentWorkingDir)},
        {QStringLiteral("gszExePath"), ValueText(gszExePath)},
        {QStringLiteral("gszExename"), ValueText(gszExename)},
        {QStringLiteral("gszHomedir"), ValueText(gszHomedir)},
        {QStringLiteral("gszTmppath"), ValueText(gszTmppath)},
        {QStringLiteral("gszCvtFilenameBase"), ValueText(gszCvtFilenameBase)},
        {QStringLiteral("gszCvtFilename"), ValueText(gszCvtFilename)},
        {QStringLiteral("gszCvtSavePath"), ValueText(gszCvtSavePath)},
        {QStringLiteral("gszKrvServerName"), ValueText(gszKrvServerName)},
    };
}

Globals SettingGlobals()
{
    return {
        {QStringLiteral("gszVersion"), ValueText(gszVersion)},
        {QStringLiteral("gszFileVersion"), ValueText(gszFileVersion)},
        {QStringLiteral("grWinPos"), RectText(grWinPos)},
        {QStringLiteral("gfCmdlineWndpos"), ValueText(gfCmdlineWndpos)},
        {QStringLiteral("gbBkClrWhite"), ValueText(gbBkClrWhite)},
        {QStringLiteral("giCmdArg"), ValueText(giCmdArg)},
        {QStringLiteral("gbCmdQuit"), ValueText(gbCmdQuit)},
        {QStringLiteral("giCmdPrintOrientation"), ValueText(giCmdPrintOrientation)},
        {QStringLiteral("giCmdPrintPapertype"), ValueText(giCmdPrintPapertype)},
        {QStringLiteral("gbIsTempFile"), ValueText(gbIsTempFile)},
        {QStringLiteral("giAutosave"), ValueText(giAutosave)},
        {QStringLiteral("giExportQuality"), ValueText(giExportQuality)},
        {QStringLiteral("giPrtMinLineWidth"), ValueText(giPrtMinLineWidth)},
        {QStringLiteral("giPageX"), ValueText(giPageX)},
        {QStringLiteral("giPageY"), ValueText(giPageY)},
        {QStringLiteral("gdPageSizeX"), ValueText(gdPageSizeX)},
        {QStringLiteral("gdPageSizeY"), ValueText(gdPageSizeY)},
        {QStringLiteral("gfEpsUseBkClr"), ValueText(gfEpsUseBkClr)},
        {QStringLiteral("gfEpsCvt2Blk"), ValueText(gfEpsCvt2Blk)},
        {QStringLiteral("gdEpsCvtScale"), ValueText(gdEpsCvtScale)},
        {QStringLiteral("giEpsMinLineWidth"), ValueText(giEpsMinLineWidth)},
        {QStringLiteral("gdwBackClrEPS"), ValueText(gdwBackClrEPS)},
        {QStringLiteral("gfPrtWht2Blk"), ValueText(gfPrtWht2Blk)},
        {QStringLiteral("gdwLineClrFlag"), ValueText(gdwLineClrFlag)},
        {QStringLiteral("gwLineClrMap"), ValueText(gwLineClrMap)},
        {QStringLiteral("gdwDebug"), ValueText(gdwDebug)},
        {QStringLiteral("gdwDrawMode"), ValueText(gdwDrawMode)},
        {QStringLiteral("gdwHpglNumPens"), ValueText(gdwHpglNumPens)},
        {QStringLiteral("gwHpglClrMap"), ValueText(gwHpglClrMap)},
    };
}

Globals ObjectGlobals()
{
    return {
        {QStringLiteral("gpPlfmembuf"), ValueText(gpPlfmembuf)},
        {QStringLiteral("gdwFilesize"), ValueText(gdwFilesize)},
        {QStringLiteral("gdwBkClrFile"), ValueText(gdwBkClrFile)},
        {QStringLiteral("gdwVectorCnt"), ValueText(gdwVectorCnt)},
        {QStringLiteral("gpAppMain"), ValueText(gpAppMain)},
        {QStringLiteral("gpMainwnd"), ValueText(gpMainwnd)},
        {QStringLiteral("gpDraw"), ValueText(gpDraw)},
        {QStringLiteral("gpLog"), ValueText(gpLog)},
    };
}

} // namespace

Globals AllGlobals()
{
    Globals all = PathGlobals();
    all.insert(SettingGlobals());
    all.insert(ObjectGlobals());
    return all;
}

QStringList Changes(const Globals& before)
{
    QStringList changes;
    const Globals after = AllGlobals();
    for (auto it = after.begin(); it != after.end(); ++it) {
        if (before.value(it.key()) != it.value())
            changes.append(it.key() + u'=' + it.value());
    }
    return changes;
}

} // namespace fixture
