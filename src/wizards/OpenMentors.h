#pragma once

#include "desktop/Desk.h"

namespace quorvik
{

class DriveLink;

/**
 * mnuMentorsBasic: opens the Basic Setup Mentor, or tells what is wrong where no drive model is defined.
 * @param changeModel shows the modal choice of a drive model.
 */
void OpenBasicSetup(Desk &desk, DriveLink &link, QWidget *owner, const std::function<void()> &changeModel);

/** Opens the I/O Mentor on Desk::WizardIOStart. */
void OpenIOSetup(Desk &desk, DriveLink &link, QWidget *owner);

} // namespace quorvik
