#pragma once

#include "wizards/frame/WizardPicture.h"
#include "wizards/io/IOSetup.h"

namespace quorvik
{

// The pictures of the I/O Mentor; they show the answers so far.
PictureFile BranchPicture(const IOSetup &setup);
PictureFile InputTerminalsPicture(const IOSetup &setup);
PictureFile OutputTerminalsPicture(const IOSetup &setup);
PictureFile DestinationPicture(const IOSetup &setup);
PictureFile SourcePicture(const IOSetup &setup);
PictureFile AnalogTypePicture(const IOSetup &setup);
PictureFile CalibrationPicture(const IOSetup &setup);
PictureFile InputValuesPicture(const IOSetup &setup);
PictureFile OutputValuesPicture(const IOSetup &setup);

} // namespace quorvik
