// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Packed graphs.
#pragma once

#include <QByteArray>
#include <QByteArrayView>

/// Packs bytes as gzip does.
QByteArray Packed(QByteArrayView bytes);
