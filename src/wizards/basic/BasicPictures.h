#pragma once

#include "wizards/basic/BasicSetup.h"
#include "wizards/frame/WizardPicture.h"

namespace quorvik
{

// The pictures of the Basic Setup Mentor; they show the answers so far.
PictureFile DriveModelPicture(const BasicSetup &setup);
PictureFile OperatingModePicture(const BasicSetup &setup);
PictureFile NameplatePicture(const BasicSetup &setup);
/** The jumpers stand as they sit on the board with their present values. */
PictureFile FeedbackPicture(const BasicSetup &setup, const TachJumpers &jumpers);
PictureFile MaxSpeedPicture(const BasicSetup &setup);
PictureFile ReferencesPicture(const BasicSetup &setup);
/** What lies behind the lines of the profile. */
PictureFile SpeedProfilePicture(bool withReverse);
PictureFile StartStopPicture(const BasicSetup &setup);
PictureFile CurrentLimitsPicture(const BasicSetup &setup);

} // namespace quorvik
