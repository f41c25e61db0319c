#pragma once

#include <string>
#include <string_view>

namespace vantor::test {

// Property lists as other programs leave them, made without a line of the code under test.

std::string listXML(std::string_view element);
/// The same list in the binary form.
std::string binaryList(const std::string& xml);

/// "<data>...</data>"
std::string dataElement(std::string_view bytes);
/// What refers to an object of a keyed archive.
std::string referenceElement(int object);

/// A keyed archive: object 1 is the root, of a class that is object 2, and has the `fields`.
/// The elements in `others` are the objects from number 3.
std::string archiveXML(std::string_view className, std::string_view fields,
                       std::string_view others = {});
/// Fields of a colour: the number of its space, and its components as archivers write them.
std::string colourFields(int space, std::string_view key, std::string_view components);

}  // namespace vantor::test
