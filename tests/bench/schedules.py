"""Schedules to be measured with, as a busy station would have them."""

DAY_S = 86400
NOON_S = DAY_S // 2
APART_S = 613  # between a line and the next
# No line starts within this time before and after the moment that is measured at.
QUIET_BEFORE_S = 1200
QUIET_AFTER_S = 1800

PLAYLIST = "first.mp3;0180\nsecond.mp3;0200\nthird.mp3;0190\n"

# In turn; nothing is still under way when its line is due again.
MIX = [
    "PlayMessage|gong.mp3,70", "Volume|55", "PlayPlaylist|music,60,p1", "StopPlaylist|p1", "Light|40",
    "PlayStream|8554/live,50", "StopStream", "PlayRadioFm|98.5", "StopRadioFm", "RecordPhoto|10,3",
    "PlayMessage|closing.mp3", "Amplifiers|5", "enableAux|1", "Lan|1", "19|1,1",
]
EVERY_DAY = "1111111"
NO_DAY = "0000000"


def start_s(index, now_s):
    """The second of the day at which that line starts."""
    return (now_s + QUIET_AFTER_S + index * APART_S % (DAY_S - QUIET_BEFORE_S - QUIET_AFTER_S)) % DAY_S


def clock(second):
    return f"{second // 3600:02}:{second // 60 % 60:02}:{second % 60:02}"


def line(second, task, days=EVERY_DAY):
    return f"{days}|{clock(second)}|*|*|*|||{task}\n"


def days_of(kind, index):
    """Whether the line is due on the day of the measurement, by the kind of schedule."""
    is_due = kind == "all" or (kind == "hundredth" and index % 100 == 0)
    return EVERY_DAY if is_due else NO_DAY


def schedule(kind, count, now_s=NOON_S):
    """The text of a schedule of so many lines, none of which starts around now_s. kind: what they are. "mixed": all
    kinds of task, every day; "none", "hundredth", "all": volumes, as many of which are due; "early": volumes that start
    ten seconds after now_s; any other: lines of that task, with {} for the line's number."""
    if kind == "mixed":
        rows = (line(start_s(i, now_s), MIX[i % len(MIX)]) for i in range(count))
    elif kind == "early":
        rows = (line(now_s + 10, "Volume|55") for _ in range(count))
    elif kind in ("none", "hundredth", "all"):
        rows = (line(start_s(i, now_s), "Volume|55", days_of(kind, i)) for i in range(count))
    else:
        rows = (line(start_s(i, now_s), kind.format(i)) for i in range(count))
    return "".join(rows)


def make_data(folder):
    """A data folder of the daemon's, with the playlist of the lines above."""
    (folder / "schedule").mkdir(parents=True)
    (folder / "playlists").mkdir()
    (folder / "playlists" / "music").write_text(PLAYLIST)
    return folder


def write(folder, kind, count):
    """The schedule as a file of the data folder that has its kind and its length as its name."""
    path = folder / "schedule" / f"{kind}-{count}.csv"
    if not path.exists():
        path.write_text(schedule(kind, count))
    return path
