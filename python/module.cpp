// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// plotvw._core: what of the Python package is compiled. plotvw/__init__.py is what its users see.
#include "meta/palette.h"
#include "meta/plfarea.h"
#include "meta/plftext.h"
#include "python/comparing.h"
#include "python/failure.h"
#include "python/graph.h"
#include "python/pictures.h"
#include "python/qtuse.h"

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <cerrno>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace py = pybind11;

namespace python {

namespace {

using Words = std::vector<std::string>;

py::str ToStr(const QString& text)
{
    return text.toStdString();
}

py::bytes ToBytes(const QByteArray& bytes)
{
    return {bytes.constData(), static_cast<size_t>(bytes.size())};
}

std::string_view View(const py::bytes& bytes)
{
    return bytes;
}

// Names of files are bytes.
std::string Name(const py::bytes& name)
{
    return std::string(View(name));
}

// Called where a function's user would see the warning's line: two frames up.
void Warn(const QStringList& messages)
{
    constexpr int kFramesUp = 2;
    for (const QString& message : messages) {
        if (PyErr_WarnEx(PyExc_UserWarning, message.toUtf8().constData(), kFramesUp) != 0)
            throw py::error_already_set(); // the user's filter asks for it
    }
}

// Runs a function that uses Qt, without the interpreter's lock.
template <typename Function> auto WithQt(Function function)
{
    QStringList messages;
    auto result = [&] {
        const py::gil_scoped_release unlocked;
        const QtUse use;
        const MessageKeeper keeper;
        auto made = function();
        messages = keeper.Messages();
        return made;
    }();
    Warn(messages);
    return result;
}

std::unique_ptr<Graph> ReadNamed(const py::bytes& path, bool strict)
{
    const std::string name = Name(path);
    const py::gil_scoped_release unlocked;
    return std::make_unique<Graph>(ReadFile(name, strict));
}

// A view of anything that holds bytes in one piece.
class HeldBytes
{
public:
    explicit HeldBytes(const py::object& holder)
    {
        if (PyObject_GetBuffer(holder.ptr(), &buffer, PyBUF_SIMPLE) != 0)
            throw py::error_already_set();
    }
    ~HeldBytes() { PyBuffer_Release(&buffer); }
    HeldBytes(const HeldBytes&) = delete;
    HeldBytes& operator=(const HeldBytes&) = delete;

    [[nodiscard]] std::string_view Bytes() const
    {
        return {static_cast<const char*>(buffer.buf), static_cast<size_t>(buffer.len)};
    }

private:
    Py_buffer buffer = {};
};

std::unique_ptr<Graph> ReadHeld(const py::object& holder, bool strict)
{
    const HeldBytes held(holder);
    const py::gil_scoped_release unlocked;
    return std::make_unique<Graph>(ReadBytes(held.Bytes(), strict));
}

// The record's members; what is between them is padding.
py::dtype VectorType()
{
    const auto row = [](const char* name, const char* format, size_t offset) {
        return py::make_tuple(name, format, offset);
    };
    const py::tuple rows[] = {row("x1", "=i2", offsetof(VectorRecord, x1)),
                              row("y1", "=i2", offsetof(VectorRecord, y1)),
                              row("x2", "=i2", offsetof(VectorRecord, x2)),
                              row("y2", "=i2", offsetof(VectorRecord, y2)),
                              row("color", "=u1", offsetof(VectorRecord, color)),
                              row("width", "=i4", offsetof(VectorRecord, width)),
                              row("path", "=u4", offsetof(VectorRecord, path))};
    py::list columns[3];
    for (const py::tuple& each : rows) {
        for (size_t i = 0; i < std::size(columns); ++i)
            columns[i].append(each[i]);
    }
    return {columns[0], columns[1], columns[2], sizeof(VectorRecord)};
}

void ForbidWriting(py::array* array)
{
    array->attr("setflags")(py::arg("write") = false);
}

// The array is a view of the graph's own block, which lives as long as the array.
py::array Vectors(const py::object& self)
{
    const auto& vectors = self.cast<const Graph&>().drawing.vectors;
    py::array array(VectorType(), {vectors.size()}, {sizeof(VectorRecord)}, vectors.data(), self);
    ForbidWriting(&array);
    return array;
}

// In the order of plotvw.Text.
py::tuple TextTuple(const TextRecord& text)
{
    return py::make_tuple(ToStr(TextFromFile(text.text)), text.x, text.y, text.before,
                          text.lineColor, ToStr(TextFromFile(text.font)), text.size, text.color,
                          text.isBold, text.isItalic);
}

py::list Texts(const Graph& graph)
{
    py::list list;
    for (const TextRecord& text : graph.drawing.texts)
        list.append(TextTuple(text));
    return list;
}

// In the order of plotvw.Damage.
py::list DamageTuples(const Graph& graph)
{
    py::list list;
    for (const auto& [kind, noted] : graph.damage)
        list.append(py::make_tuple(DamageWord(kind), noted.offset, noted.count, IsLoss(kind)));
    return list;
}

py::bytes InfoJson(const Graph& graph)
{
    QByteArray json;
    {
        const py::gil_scoped_release unlocked;
        json = Info(graph);
    }
    return ToBytes(json);
}

py::bytes Source(const Graph& graph)
{
    const PlfBytes bytes = graph.source.Bytes();
    return {bytes.data, bytes.size};
}

// The array takes the image over.
py::array ImageArray(QImage image)
{
    auto owned = std::make_unique<QImage>(std::move(image));
    QImage* const taken = owned.get();
    const py::capsule owner(owned.release(), [](void* held) { delete static_cast<QImage*>(held); });
    constexpr py::ssize_t kChannels = 4;
    return py::array_t<uint8_t>(
        {py::ssize_t{taken->height()}, py::ssize_t{taken->width()}, kChannels},
        {py::ssize_t{taken->bytesPerLine()}, kChannels, py::ssize_t{1}}, taken->bits(), owner);
}

py::array RenderArray(const Graph& graph, const Words& words)
{
    const convert::Options options = ReadSettings(words, "array.png");
    return ImageArray(WithQt([&] { return Render(graph, options.picture); }));
}

py::bytes DrawBytes(const Graph& graph, const Words& words, const std::string& format)
{
    const convert::Options options = ReadSettings(words, "file." + format);
    return ToBytes(WithQt([&] { return Draw(graph, options); }));
}

void SaveNamed(const Graph& graph, const py::bytes& path, const Words& words)
{
    const std::string name = Name(path);
    const convert::Options options = ReadSettings(words, name);
    WithQt([&] {
        Save(graph, options, name);
        return true;
    });
}

py::dict CountsDict(const diff::Counts& counts)
{
    using py::literals::operator""_a;
    return py::dict("gone"_a = counts.gone, "new"_a = counts.come, "moved"_a = counts.moved,
                    "recolored"_a = counts.recolored, "rewidened"_a = counts.rewidened,
                    "texts"_a = counts.texts, "reordered"_a = counts.reordered);
}

py::array FateArray(const std::vector<diff::Fate>& fates)
{
    static_assert(sizeof(diff::Fate) == sizeof(uint8_t));
    return py::array(py::dtype::of<uint8_t>(), {fates.size()}, {sizeof(uint8_t)}, fates.data());
}

// Areas as plfdiff has them: in drawing units.
py::list AreaTuples(const std::vector<diff::ChangedArea>& areas)
{
    py::list list;
    for (const diff::ChangedArea& each : areas)
        list.append(py::make_tuple(each.area.left, kPlfHeight - each.area.top, each.area.right,
                                   kPlfHeight - each.area.bottom));
    return list;
}

// In the order of plotvw.Comparison.
py::tuple CompareGraphs(const Graph& first, const Graph& second, const std::string& tolerance,
                        const std::string& ignored, const Words& areas)
{
    const diff::Rules rules = ReadRules(tolerance, ignored, areas);
    const diff::Comparison result = [&] {
        const py::gil_scoped_release unlocked;
        return Compare(first, second, rules);
    }();
    return py::make_tuple(result.Changes(), CountsDict(result.counts), result.farthest,
                          result.medianMove, result.hasOtherBackground, FateArray(result.fates[0]),
                          FateArray(result.fates[1]), AreaTuples(result.areas));
}

// Row kNoBackground is how a background without a color is drawn. The array is a view of bytes,
// which nothing makes writable.
py::array Palette()
{
    constexpr int kChannels = 3;
    QByteArray values;
    for (int row = 0; row <= kNoBackground; ++row) {
        const QColor color = PaletteColor(row);
        for (const int channel : {color.red(), color.green(), color.blue()})
            values.append(static_cast<char>(channel));
    }
    const py::bytes owner = ToBytes(values);
    py::array array(py::dtype::of<uint8_t>(), {kNoBackground + 1, kChannels}, {kChannels, 1},
                    View(owner).data(), owner);
    ForbidWriting(&array);
    return array;
}

py::object NameObject(const std::string& name)
{
    return py::reinterpret_steal<py::object>(
        PyUnicode_DecodeFSDefaultAndSize(name.data(), static_cast<Py_ssize_t>(name.size())));
}

void SetGraphError(const GraphFailure& failure)
{
    const py::object type = py::module_::import("plotvw").attr("PlfError");
    PyErr_SetObject(type.ptr(), type(failure.reason, failure.offset).ptr());
}

void SetSystemError(const SystemFailure& failure)
{
    errno = failure.error;
    PyErr_SetFromErrnoWithFilenameObject(PyExc_OSError, NameObject(failure.name).ptr());
}

void SetOutputError(const OutputFailure& failure)
{
    const py::tuple arguments = py::make_tuple(EEXIST, failure.reason, NameObject(failure.name));
    PyErr_SetObject(PyExc_FileExistsError, arguments.ptr());
}

void Translate(std::exception_ptr thrown)
{
    try {
        if (thrown)
            std::rethrow_exception(std::move(thrown));
    } catch (const GraphFailure& failure) {
        SetGraphError(failure);
    } catch (const SystemFailure& failure) {
        SetSystemError(failure);
    } catch (const OutputFailure& failure) {
        SetOutputError(failure);
    } catch (const SettingsFailure& failure) {
        PyErr_SetString(PyExc_ValueError, failure.reason.c_str());
    }
}

// Keeps Qt ready from enter to exit.
class Readiness
{
public:
    void Enter() { use.emplace(); }
    void Exit() { use.reset(); }

private:
    std::optional<QtUse> use;
};

void DefineGraph(py::module_& module)
{
    py::class_<Graph>(module, "Graph")
        .def_property_readonly("vectors", &Vectors)
        .def_property_readonly("texts", &Texts)
        .def_property_readonly("background",
                               [](const Graph& graph) { return graph.drawing.background; })
        .def_property_readonly("damage", &DamageTuples)
        .def("info", &InfoJson)
        .def("source", &Source)
        .def("render", &RenderArray)
        .def("draw", &DrawBytes)
        .def("save", &SaveNamed);
}

void DefineReadiness(py::module_& module)
{
    using Unlocked = py::call_guard<py::gil_scoped_release>;
    py::class_<Readiness>(module, "Readiness")
        .def(py::init<>())
        .def("enter", &Readiness::Enter, Unlocked())
        .def("exit", &Readiness::Exit, Unlocked());
}

} // namespace

} // namespace python

PYBIND11_MODULE(_core, module)
{
    python::TellFirstThread();
    py::register_exception_translator(python::Translate);
    python::DefineGraph(module);
    python::DefineReadiness(module);
    module.def("read_file", &python::ReadNamed);
    module.def("read_bytes", &python::ReadHeld);
    module.def("compare", &python::CompareGraphs);
    module.attr("PALETTE") = python::Palette();
    module.attr("WIDTH") = kPlfWidth;
    module.attr("HEIGHT") = kPlfHeight;
    module.attr("__version__") = PLOTVW_VERSION;
}
