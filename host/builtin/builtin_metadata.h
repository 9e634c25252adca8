// What the metadata of a built-in kind's parameter can ask of the scene reader, beside the keys that
// every plugin may use. Write these texts into the last argument of a declaration, alone or among others.
//
// The scene reader acts on them while it loads a scene and while a probe sets parameters; a plug-in
// library's own metadata is never acted on, only shown.
#pragma once

namespace ombrix {

// A string parameter (single or list) names a file. The plugin receives a path that exists: a relative
// one is looked for in the scene file's folder, then in the working folder. A file that is not there is
// an error of the scene that names the path; "" passes as it is and counts as not given.
inline constexpr const char* kFileMetadata = "quantityType=(file)";
// The scene has to give the parameter; leaving it out is an error of the scene.
inline constexpr const char* kRequiredFileMetadata = "quantityType=(file), required=(yes)";
// A list of exactly three elements.
inline constexpr const char* kThreeElementsMetadata = "size=(3)";
// A string parameter that takes null, as a choice of its own beside a text and being left out. The
// parameter's written value then holds a std::monostate.
inline constexpr const char* kNullableMetadata = "null=(allowed)";
// A list of numbers that may stand in lists of its own, [[0, 1, 2], [0, 2, 3]], whose numbers follow one
// another; with "ended", -1 follows those of each inner list.
inline constexpr const char* kNestedMetadata = "nested=(plain)";
inline constexpr const char* kNestedEndedMetadata = "nested=(ended)";
// A color parameter that holds coordinates: it takes [u, v] too, for [u, v, 0].
inline constexpr const char* kCoordinateMetadata = "quantityType=(coordinate)";

} // namespace ombrix
