#pragma once
/// Values of a parsed image trailer. The nodes are the platform's; nothing here owns one, blocks or keeps state.
/// Any thread, one at a time for a document.
#include <pal/AaGpuXml.hpp>

#include <cstdint>
#include <string>

/// Finds a child of a node by its name, letter for letter. Grandchildren are not looked at.
/// @param node  not null
/// @param name  not null
/// @return the first such child in document order; null when there is none
AaGpuXmlNode* FindXmlTag(const AaGpuXmlNode* node, const char* name);

/// Reads the text of a node's child.
/// @param node  not null
/// @param name  name of the child, not null
/// @return the text; empty when there is no such child
std::string getStringValueFromNode(const AaGpuXmlNode* node, const char* name);

/// Reads the number in a node's child.
/// @param node  not null
/// @param name  name of the child, not null
/// @return the number, see ps::hwapi::common::image::elementNumber; 0 when there is no such child
std::uint32_t getU32ValueFromNode(const AaGpuXmlNode* node, const char* name);

/// Looks for a board's identifier in the list of a trailer.
/// @param trailerNode           the element "trailer", not null
/// @param ownHwSwId             hardware/software identifier of the board
/// @param allowMinorDifference  0: the identifier must be listed as it is; else one that differs in the lowest 8 bits
///                              will do when it is not
/// @return IMAGE_OK, IMAGE_ERR_HWSWID
extern "C" int scan_hwswid(const AaGpuXmlNode* trailerNode, std::uint32_t ownHwSwId, int allowMinorDifference);
