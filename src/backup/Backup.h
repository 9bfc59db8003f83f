#pragma once

// Automatic copies of the database at start (moment 0) and at close
// (moment 9), on the schedule the person chose.
void InitBackupSettings();
void RunScheduledBackup(int moment);
