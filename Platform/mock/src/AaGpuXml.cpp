// The XML parser is a pair of classes, so its calls are caught by the linker (--wrap, see CMakeLists.txt) under their
// symbols' names: parsing opens a document, deleting the document closes it. Nodes within a document are deleted by the
// platform itself, which is not caught.
#include "mock/src/Effects.hpp"

#include <pal/AaGpuXml.hpp>

#include <string>

extern "C" {
AaGpuXmlNode*
__real__ZN14AaGpuXmlParser13AaGpuXmlParseERKNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE(AaGpuXmlParser*,
                                                                                                 const std::string&);
AaGpuXmlNode*
__wrap__ZN14AaGpuXmlParser13AaGpuXmlParseERKNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE(AaGpuXmlParser*,
                                                                                                 const std::string&);
// a destructor answers its object on ARM
void* __real__ZN12AaGpuXmlNodeD1Ev(AaGpuXmlNode*);
void* __wrap__ZN12AaGpuXmlNodeD1Ev(AaGpuXmlNode*);
}

AaGpuXmlNode* __wrap__ZN14AaGpuXmlParser13AaGpuXmlParseERKNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE(
    AaGpuXmlParser* self, const std::string& text) {
    using namespace mox::mock;
    static FunctionRecord& record = functionRecord("AaGpuXmlParse");
    Call call(record, {word(self), text.size()});
    // no text is no document: the parser then also knows that its last result was a failure
    AaGpuXmlNode* const document =
        __real__ZN14AaGpuXmlParser13AaGpuXmlParseERKNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE(
            self, call.faulted() ? std::string() : text);
    if (call.faulted())
        return call.faultResult<AaGpuXmlNode*>();
    Call::noteCarriedOut("AaGpuXmlParse");
    if (document != nullptr)
        enterHandle(call, Kind::xmlRoot, word(document), nullptr);
    return document;
}

void* __wrap__ZN12AaGpuXmlNodeD1Ev(AaGpuXmlNode* self) {
    mox::mock::strike(mox::mock::Kind::xmlRoot, mox::mock::handleOf(mox::mock::word(self)));
    return __real__ZN12AaGpuXmlNodeD1Ev(self);
}
