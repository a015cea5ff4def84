#pragma once

#include <memory>
#include <string>

#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaObject.h"
#include "corvel/metaobj/MetaStruct.h"
#include "corvel/platform/Export.h"

// libxml2's own name for a node, declared here so that no header of ours needs libxml2.
struct _xmlNode;  // NOLINT(bugprone-reserved-identifier): the name is libxml2's
using xmlNode = _xmlNode;

namespace Corvel::AutoCli {

/// Reads XML into values: the standard output of extension commands and the shape that a descriptor
/// declares for it.
///
/// The value document. Its root element may have any name; the first element below it is the value:
///
///   <string>text</string>                     a String
///   <int>42</int>                             an Int; empty content gives 0
///   <bool>true</bool>                         a Bool; false for "false", "f" and "0", otherwise true
///   <structure typeName="Disk">               a Struct of that type name
///     <field name="Size"><int>7</int></field>   a field without an element inside is left out
///   </structure>
///   <list type="structure">                   a List; type is string, int, bool, structure or list
///     <structure typeName="Disk">..</structure>
///   </list>
///
/// Only element nodes count as elements: text, comments, CDATA sections, processing instructions and
/// entity references between them are passed over. A null node is one without name, attributes,
/// content and children.
///
/// Failures: every refusal is a CorvelException.
/// Depth:    the builders do not recurse; the parser refuses texts with much more than 250 levels.

/// The value of a whole text. Only the first element below the root is read.
///
/// Declarations of entities are refused (such a text counts as unparseable), nothing is loaded from
/// files or the network, and the parser writes nothing to standard error.
///
/// @return the value; an empty reference for a text that cannot be parsed and for one whose root
///         has no element.
/// Raises
///   "Error parsing command output.  Unable to find a properly formatted output tag as the document
///    root"
///   "Error parsing command output.  Unable to build a proper metaobject from output tag.  output
///    must contain properly formatted tags of type bool, int, string, structure and list. Error
///    was : " + what XmlUtil_BuildMetaObject raised.
CORVEL_EXPORT std::shared_ptr<MetaObj::MetaObject> XmlUtil_ParseXmlOutput(const std::string& text);

/// The value that one element stands for. Raises
///   "Trying to make a meta object from a text field"   (a text node)
///   "Trying to make a meta object from a comment"      (a comment node)
///   "Unable to read an int value from: '" + content + "'"   (no number at its start, or one that a
///                                                            64-bit integer cannot hold)
///   "Unable to make a MetaObject from a node with tag '" + name + "'"
CORVEL_EXPORT std::shared_ptr<MetaObj::MetaObject> XmlUtil_BuildMetaObject(xmlNode* node);

/// The list of a `list` element. A list of structures takes its first structure as list structure
/// (and thereby locks it); without items its list structure is null. Raises
///   "Invalid list type attribute.  Must be one of [string, int, bool, structure, list]"
/// and what MetaList raises for the type "list" and for an item of another kind or shape.
CORVEL_EXPORT std::shared_ptr<MetaObj::MetaList> BuildMetaList(xmlNode* node);

/// The structure of a `structure` element. Children other than `field` are passed over; of two
/// fields with one name the later stays. Raises
///   "Invalid <field> tag found.  <field> requires a 'name' attribute."
/// and what MetaStruct raises for the type name.
CORVEL_EXPORT std::shared_ptr<MetaObj::MetaStruct> BuildMetaStruct(xmlNode* node);

/// @return the one child element of that name, or null when there is none. Raises
///   "More than one instance of " + tag + " found, expected only one."
CORVEL_EXPORT xmlNode* XmlUtil_FindChildNode(xmlNode* node, const std::string& tag);

/// @return the text content of the one child element of that name, empty when there is none. Raises
///   "Illegal Duplicate tags found.  The tag " + tag +
///   " was expected only once, but was found multiple times."
CORVEL_EXPORT std::string XmlUtil_GetContentForChildByTag(xmlNode* node, const std::string& tag);

/// @return the attribute's value, empty when it is absent.
CORVEL_EXPORT std::string XmlUtil_ExtractAttribute(xmlNode* node, const std::string& name);

/// @return the text inside the node, its descendants' included; empty when there is none.
CORVEL_EXPORT std::string XmlUtil_GetContent(xmlNode* node);

}  // namespace Corvel::AutoCli
