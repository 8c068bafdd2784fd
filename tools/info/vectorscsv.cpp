// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/info/vectorscsv.h"

#include "meta/drawing.h"
#include "tools/common/filename.h"

#include <charconv>
#include <cstring>

namespace info {

namespace {

constexpr char kHeader[] = "x1,y1,x2,y2,color,width,path\n";

// Seven numbers, none of which has more characters than the lowest of 32 bits, and what follows
// each.
constexpr size_t kLongestRow = 7 * (sizeof "-2147483648");

// A field is quoted where it would not be read as one. No line end is in it.
QByteArray Field(QByteArray text)
{
    if (!text.contains(',') && !text.contains('"'))
        return text;
    return '"' + text.replace("\"", "\"\"") + '"';
}

template <typename Integer> char* PutNumber(char* at, Integer value, char after)
{
    at = std::to_chars(at, at + kLongestRow, value).ptr;
    *at = after;
    return at + 1;
}

} // namespace

void VectorsCsv::Begin()
{
    if (hasFiles)
        Put("file,");
    Put(kHeader);
}

bool VectorsCsv::Graph(const QString& name, const PlfBytes& graph)
{
    const QByteArray file = hasFiles ? Field(tools::VisibleText(name)) + ',' : QByteArray();
    for (const VectorRecord& vector : ReadDrawing(graph).vectors) {
        Put(file);
        PutRow(vector);
    }
    return checks && HasLoss(FindDamage(graph));
}

void VectorsCsv::Put(QByteArrayView bytes)
{
    const auto size = static_cast<size_t>(bytes.size());
    if (size == 0)
        return;
    if (size > block.size() - filled)
        Flush();
    if (size > block.size()) {
        Write(bytes);
        return;
    }
    memcpy(block.data() + filled, bytes.data(), size);
    filled += size;
}

void VectorsCsv::PutRow(const VectorRecord& vector)
{
    if (block.size() - filled < kLongestRow)
        Flush();
    char* at = block.data() + filled;
    for (const int number : {int{vector.x1}, int{vector.y1}, int{vector.x2}, int{vector.y2},
                             int{vector.color}, int{vector.width}})
        at = PutNumber(at, number, ',');
    at = PutNumber(at, vector.path, '\n');
    filled = static_cast<size_t>(at - block.data());
}

void VectorsCsv::Flush()
{
    Write({block.data(), static_cast<qsizetype>(filled)});
    filled = 0;
}

} // namespace info
