// The time stamp that reports of the link database and the lists carry.
#pragma once

constexpr char BuildStamp[] = "Fri May  4 13:58:19 2012"; // what the receivers of reports expect
