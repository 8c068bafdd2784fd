// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Loading and drawing for the benchmarks. Errors end the program with a message.
#pragma once

#include "meta/plfmeta.h"

#include <QLine>

#include <string>
#include <vector>

class QPainter;

/// Ends the program: "FILE: REASON" on standard error, exit code 1.
[[noreturn]] void Fail(const std::string& file, const char* reason);

/// The folder with the graphs: the first argument, else $PLOTVW_STREAMS. Prints the usage and ends
/// the program with 2 if there is none or there are too many arguments.
/// @param most  arguments, with the program's name
std::string GraphFolder(int argc, char** argv, int most, const char* usage);

/// Loads a graph from a file.
void Load(std::string path);
/// Loads a graph from memory.
void LoadBytes(const std::string& graph);
/// The bytes of a file.
std::string ReadBytes(const std::string& path);

/// Draws the loaded graph, with its widths unchanged.
/// @param painter  null to draw nothing
/// @param mode     kConvertEps writes it into gszCvtFilename
/// @param zoom     the part to draw, in drawing units; all zeros for the whole graph
void Draw(QPainter* painter, int mode, Rect zoom = {});

/// The lines of the loaded graph, in drawing units.
std::vector<QLine> CollectLines();

/// A graph with another width of its lines, up to 1023: its only width command is replaced.
std::string WithWidth(std::string graph, int width);
