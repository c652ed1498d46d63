#include "app/LinkFaultText.h"

#include "app/Texts.h"
#include "app/texts/LinkedFileTexts.h"

namespace corvel {

namespace {

const Text& textOf(FileFault fault) {
    switch (fault) {
        case FileFault::missing:
            return texts::faultMissing;
        case FileFault::noPermission:
            return texts::faultNoPermission;
        case FileFault::readOnly:
            return texts::faultReadOnly;
        case FileFault::diskFull:
            return texts::faultDiskFull;
        case FileFault::folder:
            return texts::faultFolder;
        case FileFault::notAFile:
            return texts::faultPipe;
        case FileFault::linkLoop:
            return texts::faultLinkLoop;
        case FileFault::tooLarge:
            return texts::faultTooLarge;
        case FileFault::changed:
            return texts::faultChanged;
        case FileFault::noAnswer:
            return texts::faultNoAnswer;
        case FileFault::failed:
            break;
    }
    return texts::faultSystem;
}

}  // namespace

std::string reasonOf(const LinkError& error, const Localisation& texts) {
    switch (error.fault()) {
        case LinkFault::file:
            return texts(textOf(error.fileFault()));
        case LinkFault::binary:
            return texts(texts::faultNotText);
        case LinkFault::utf16:
            return texts(texts::faultUtf16);
        case LinkFault::notUtf8:
            return texts(texts::faultNotUtf8);
        case LinkFault::alreadyLinked:
            break;
    }
    const auto& other = error.otherNote();
    const bool hasTitle = other && !other->title.empty();
    return texts.format(texts::faultAlreadyLinked,
                        {hasTitle ? other->title : texts(texts::untitled)});
}

bool canBeImported(const LinkError& error) {
    return error.fault() == LinkFault::utf16 || error.fault() == LinkFault::notUtf8 ||
           (error.fault() == LinkFault::file && error.fileFault() == FileFault::tooLarge);
}

}  // namespace corvel
