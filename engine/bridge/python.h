// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
// All that a client of the interpreter needs.
#include "engine/bridge/python_bytes.h"
#include "engine/bridge/python_conversions.h"
#include "engine/bridge/python_error.h"
#include "engine/bridge/python_function.h"
#include "engine/bridge/python_interface.h"
#include "engine/bridge/python_iterator.h"
#include "engine/bridge/python_object.h"
#include "engine/bridge/python_operators.h"
#include "engine/bridge/python_views.h"
