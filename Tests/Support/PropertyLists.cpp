#include "Tests/Support/PropertyLists.h"

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

#include <plist/plist.h>

namespace vantor::test {
namespace {

using Node = std::unique_ptr<void, decltype(&plist_free)>;
using Memory = std::unique_ptr<void, decltype(&std::free)>;

std::string written(const Node& node, void (*write)(plist_t, char**, std::uint32_t*)) {
    char* bytes = nullptr;
    std::uint32_t length = 0;
    write(node.get(), &bytes, &length);
    const Memory owned(bytes, &std::free);
    return bytes == nullptr ? std::string{} : std::string(bytes, length);
}

std::vector<std::string> keysOf(plist_t dictionary) {
    plist_dict_iter position = nullptr;
    plist_dict_new_iter(dictionary, &position);
    const Memory ownedPosition(position, &std::free);
    std::vector<std::string> keys;
    for (std::uint32_t left = plist_dict_get_size(dictionary); left > 0; --left) {
        char* key = nullptr;
        plist_dict_next_item(dictionary, position, &key, nullptr);
        const Memory ownedKey(key, &std::free);
        keys.emplace_back(key);
    }
    return keys;
}

/// The library reads the references of XML as the dictionaries that they look like; a binary list
/// has a kind of its own for them.
void makeReferences(plist_t node) {
    for (std::uint32_t index = 0; index < plist_array_get_size(node); ++index)
        makeReferences(plist_array_get_item(node, index));
    for (const std::string& key : keysOf(node)) {
        const plist_t item = plist_dict_get_item(node, key.c_str());
        makeReferences(item);
        std::uint64_t object = 0;
        if (const plist_t number = plist_dict_get_item(item, "CF$UID")) {
            plist_get_uint_val(number, &object);
            plist_dict_set_item(node, key.c_str(), plist_new_uid(object));
        }
    }
}

std::string classElement(std::string_view name) {
    return "<dict><key>$classname</key><string>" + std::string(name) +
           "</string><key>$classes</key><array><string>" + std::string(name) +
           "</string><string>NSObject</string></array></dict>";
}

}  // namespace

std::string listXML(std::string_view element) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">" +
           std::string(element) + "</plist>\n";
}

std::string binaryList(const std::string& xml) {
    plist_t root = nullptr;
    plist_from_xml(xml.data(), static_cast<std::uint32_t>(xml.size()), &root);
    const Node owned(root, &plist_free);
    makeReferences(root);
    return written(owned, &plist_to_bin);
}

std::string dataElement(std::string_view bytes) {
    const Node data(plist_new_data(bytes.data(), bytes.size()), &plist_free);
    const std::string xml = written(data, &plist_to_xml);
    const auto begin = xml.find("<data>"), end = xml.find("</plist>");
    return xml.substr(begin, end - begin);
}

std::string referenceElement(int object) {
    return "<dict><key>CF$UID</key><integer>" + std::to_string(object) + "</integer></dict>";
}

std::string archiveXML(std::string_view className, std::string_view fields,
                       std::string_view others) {
    const std::string root =
        "<dict><key>$class</key>" + referenceElement(2) + std::string(fields) + "</dict>";
    return listXML("<dict><key>$version</key><integer>100000</integer>"
                   "<key>$archiver</key><string>NSKeyedArchiver</string>"
                   "<key>$top</key><dict><key>root</key>" +
                   referenceElement(1) + "</dict><key>$objects</key><array><string>$null</string>" +
                   root + classElement(className) + std::string(others) + "</array></dict>");
}

std::string colourFields(int space, std::string_view key, std::string_view components) {
    return "<key>NSColorSpace</key><integer>" + std::to_string(space) + "</integer><key>" +
           std::string(key) + "</key>" + dataElement(std::string(components) + '\0');
}

}  // namespace vantor::test
