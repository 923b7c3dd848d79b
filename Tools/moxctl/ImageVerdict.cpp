#include "ImageVerdict.hpp"

#include "Failure.hpp"
#include "Numbers.hpp"

#include <mox/Firmware.h>
#include <mox/XmlValues.hpp>

namespace mox::tools {

namespace {

std::string listOf(const std::vector<std::uint32_t>& identifiers) {
    std::string text;
    for (const std::uint32_t identifier : identifiers) {
        text += (text.empty() ? "" : ", ") + showHex(identifier, 8);
    }
    return text;
}

void blame(ImageVerdict& verdict, ImageProblem problem, const std::string& message) {
    verdict.problem = problem;
    verdict.message = message;
}

void blameOffset(ImageVerdict& verdict, const TrailerReading& reading) {
    if (reading.size() < offsetWordSize) {
        blame(verdict, ImageProblem::tooShort,
              "expected at least the 4 bytes of the offset word, got " + std::to_string(reading.size()));
        return;
    }
    const std::uint32_t word = reading.storedOffset();
    if (reading.looksSwapped()) {
        blame(verdict, ImageProblem::offsetSwapped,
              "the offset word looks byte-swapped: " + showHex(word, 8) + " is stored, the trailer begins at " +
                  showHex(reading.swappedOffset(), 8));
    } else if (word == 0) {
        blame(verdict, ImageProblem::offsetZero, "the offset word is zero");
    } else {
        blame(verdict, ImageProblem::offsetOutside,
              "the offset word " + showHex(word, 8) + " points outside of the file of " + showHex(reading.size(), 8) +
                  " bytes");
    }
}

void blameText(ImageVerdict& verdict, const TrailerReading& reading) {
    const std::string place = "the text at offset " + showHex(reading.offset(), 8);
    if (reading.looksSwapped()) {
        blameOffset(verdict, reading);
    } else if (reading.isXml()) {
        blame(verdict, ImageProblem::noTrailer, place + " has no outermost element 'trailer'");
    } else if (reading.runsIntoWord()) {
        blame(verdict, ImageProblem::notXml,
              place + " is not XML, because no zero byte ends it and the offset word is read as a part of it");
    } else {
        blame(verdict, ImageProblem::notXml, place + " is not XML");
    }
}

void blameWhatCannotBeRead(ImageVerdict& verdict, const TrailerReading& reading) {
    if (reading.hasText()) {
        blameText(verdict, reading);
    } else {
        blameOffset(verdict, reading);
    }
}

void blameIdentifiers(ImageVerdict& verdict, std::optional<std::uint32_t> hwSwId) {
    const Image& image = *verdict.image;
    if (!image.hasList) {
        blame(verdict, ImageProblem::noIdentifiers, "the trailer has no 'HwSwIdList', so no board takes the image");
    } else if (image.hwSwIds.empty()) {
        blame(verdict, ImageProblem::noIdentifiers, "the list of identifiers is empty, so no board takes the image");
    } else {
        blame(verdict, ImageProblem::noMatch,
              "not for " + showHex(hwSwId.value_or(0), 8) + "; the image lists " + listOf(image.hwSwIds));
    }
}

void blamePayload(ImageVerdict& verdict) {
    std::uint32_t crc = 0;
    calculate_crc(verdict.file.c_str(), verdict.image->offset, &crc);
    verdict.payloadCrc = crc;
    blame(verdict, ImageProblem::crc,
          "CRC-32 differs: the trailer says " + showHex(elementNumber(verdict.image->crc), 8) + ", the payload has " +
              showHex(crc, 8));
}

/// Whether a board reads all of a software version's text.
bool isVersionNumber(const std::string& text) {
    const bool isHex = text.rfind("0x", 0) == 0;
    const std::string digits = text.substr(isHex ? 2 : 0);
    return !digits.empty() &&
           digits.find_first_not_of(isHex ? "0123456789abcdefABCDEF" : "0123456789") == std::string::npos;
}

std::vector<std::string> notesOn(const Image& image) {
    std::vector<std::string> notes;
    if (elementNumber(image.length) != image.offset) {
        notes.push_back("element 'Length' says " + std::to_string(elementNumber(image.length)) + ", the payload has " +
                        std::to_string(image.offset) + " bytes; boards do not compare them");
    }
    if (!image.hasZeroByte) {
        notes.emplace_back(image.wordInText == 0
                               ? "no zero byte of its own ends the text; the offset word begins with one"
                               : "no zero byte ends the text, so a part of the offset word is read as XML, which not "
                                 "every parser takes");
    }
    const std::string version = image.swVersion.value_or("");
    if (!isVersionNumber(version)) {
        notes.push_back("boards read the software version '" + version + "' as " +
                        std::to_string(versionNumber(image)));
    }
    return notes;
}

std::string praise(const ImageVerdict& verdict, std::optional<std::uint32_t> hwSwId) {
    const Image& image = *verdict.image;
    std::string text = "version " + image.swVersion.value_or("") + ", CRC-32 " + showHex(elementNumber(image.crc), 8) +
                       ", for " + listOf(image.hwSwIds);
    if (!hwSwId) {
        return text;
    }
    const bool isExact = verdict.match == IdentifierMatch::exact;
    text += isExact ? "; fits " : "; fits but for the minor version ";
    return text + showHex(*hwSwId, 8);
}

void judge(ImageVerdict& verdict, std::optional<std::uint32_t> hwSwId) {
    if (verdict.code == IMAGE_OK && verdict.image->hwSwIds.empty()) {
        verdict.code = IMAGE_ERR_HWSWID; // what every board answers
    }
    if (verdict.code == IMAGE_ERR_CRC) {
        blamePayload(verdict);
        return;
    }
    verdict.payloadCrc = elementNumber(verdict.image->crc);
    if (verdict.code == IMAGE_ERR_HWSWID) {
        blameIdentifiers(verdict, hwSwId);
    } else {
        verdict.message = praise(verdict, hwSwId);
    }
}

} // namespace

IdentifierMatch matchOf(const AaGpuXmlNode* trailer, std::uint32_t hwSwId) {
    if (scan_hwswid(trailer, hwSwId, 0) == IMAGE_OK) {
        return IdentifierMatch::exact;
    }
    return scan_hwswid(trailer, hwSwId, 1) == IMAGE_OK ? IdentifierMatch::minor : IdentifierMatch::none;
}

ImageVerdict verifyImage(const std::string& file, std::optional<std::uint32_t> hwSwId) {
    const TrailerReading reading(file);
    ImageVerdict verdict;
    verdict.file = file;
    verdict.code = hwSwId ? binary_validate(file.c_str(), *hwSwId) : binary_crc(file.c_str());
    if (reading.trailer() == nullptr) {
        blameWhatCannotBeRead(verdict, reading);
        return verdict;
    }
    verdict.image = reading.image();
    verdict.notes = notesOn(*verdict.image);
    if (hwSwId) {
        verdict.match = matchOf(reading.trailer(), *hwSwId);
    }
    judge(verdict, hwSwId);
    return verdict;
}

Image readImage(const std::string& file) {
    const TrailerReading reading(file);
    if (reading.trailer() == nullptr) {
        ImageVerdict verdict;
        verdict.file = file;
        blameWhatCannotBeRead(verdict, reading);
        throw Failure(ExitStatus::verificationFailed, file + ": " + verdict.message);
    }
    return reading.image();
}

} // namespace mox::tools
