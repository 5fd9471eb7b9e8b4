"""The class as other hosts use it, with an application object of one's own."""
import zelprofiler01 as zel


class Planner:
    Title = "Host Planner"  # names the settings
    Path = "."              # the folder of zelErrorLog.txt


profiler = zel.ProfileControl()
profiler.SetClientApp(Planner())
profiler.StaDatum = 1

zel.settings.set("Profile/Prf_Freq", 450)
print(f"{profiler.GetPathLoss((36.40, -84.35, 30), (36.22, -84.12, 30)):.1f} dB")
print(profiler.GetPathLoss.__doc__.split(":")[0])

try:
    profiler.RangeLines = 70000
except zel.ValueOverflowError as error:
    print(error)
