#pragma once
/// XML parser. A document becomes a tree of nodes that belongs to the caller.
///
///     AaGpuXmlParser parser(0);
///     std::unique_ptr<AaGpuXmlNode> document(parser.AaGpuXmlParse(text));
///     if (!document)
///         return parser.AaGpuXmlGetLastResult();
///     for (AaGpuXmlNode* node = document->AaGpuXmlGetFirstChildren(); node != nullptr; node = node->AaGpuXmlGetNext())
///         use(node->AaGpuXmlGetName(), node->AaGpuXmlGetValue());
///
/// One object is used by one thread at a time; nothing blocks.
#include <string>
#include <string_view>

/// What a node is.
enum EAaGpuXmlNodeType {
    EAaGpuXmlNodeType_Element = 1,
    EAaGpuXmlNodeType_Attribute = 2,
    EAaGpuXmlNodeType_Document = 9 ///< the root that the parser returns
};

/// Results of the parser, given as int.
enum EAaGpuXmlResult {
    EAaGpuXmlResult_NoError = 0,
    EAaGpuXmlResult_NotParsed = 1,     ///< nothing was parsed yet
    EAaGpuXmlResult_SyntaxError = 2,   ///< not well formed, or no outermost element
    EAaGpuXmlResult_OutOfResources = 3 ///< no memory
};

/// A document, an element or an attribute. The children of a node are its attributes in the order of the text, then its
/// elements in document order; a document's children are its outermost elements. Only documents are owned by the
/// caller: every other node belongs to its document and lives as long.
class AaGpuXmlNode {
public:
    AaGpuXmlNode(const AaGpuXmlNode&) = delete;
    AaGpuXmlNode& operator=(const AaGpuXmlNode&) = delete;
    ~AaGpuXmlNode();

    /// Tells whether AaGpuXmlGetFirstChildren has something to give.
    bool AaGpuXmlHasChildren() const;

    /// @return the first child; null when there is none
    AaGpuXmlNode* AaGpuXmlGetFirstChildren() const;

    /// @return the next child of the same parent; null behind the last one
    AaGpuXmlNode* AaGpuXmlGetNext() const;

    /// @return one of EAaGpuXmlNodeType
    int AaGpuXmlGetType() const;

    /// @return name of the element or attribute, which lives as long as the document; empty for a document
    std::string_view AaGpuXmlGetName() const;

    /// @return an attribute's value; an element's own text, without that of its children and without surrounding white
    ///         space; empty for a document. It lives as long as the document
    std::string_view AaGpuXmlGetValue() const;

private:
    friend class AaGpuXmlParser;
    struct Content;
    explicit AaGpuXmlNode(Content& content);

    Content& m_content;
};

/// Parses texts, one after the other. The documents do not depend on the parser.
class AaGpuXmlParser {
public:
    /// @param options  0; other values are reserved
    explicit AaGpuXmlParser(int options);
    AaGpuXmlParser(const AaGpuXmlParser&) = delete;
    AaGpuXmlParser& operator=(const AaGpuXmlParser&) = delete;
    // NOLINTNEXTLINE(performance-trivially-destructible): whoever provides the platform defines it
    ~AaGpuXmlParser();

    /// Parses a text. Comments and processing instructions are passed over; entities other than the five predefined
    /// ones and character references are not expanded. A document type declaration, more than 64 levels of elements and
    /// more than 1 MiB of text are errors.
    /// @param text  UTF-8; zero bytes at its end are ignored
    /// @return the document, which the caller deletes; null on failure (AaGpuXmlGetLastResult tells which)
    AaGpuXmlNode* AaGpuXmlParse(const std::string& text);

    /// @return result of the last AaGpuXmlParse, one of EAaGpuXmlResult
    int AaGpuXmlGetLastResult() const;

private:
    int m_lastResult = EAaGpuXmlResult_NotParsed;
};
