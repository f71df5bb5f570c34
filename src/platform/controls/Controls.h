#pragma once
// Every control model and Form, for the windows' headers.
#include "Bars.h"
#include "Buttons.h"
#include "Calendar.h"
#include "Form.h"
#include "Grid.h"
#include "Lists.h"
#include "TabStrip.h"
#include "TextControls.h"
#include "Timer.h"
