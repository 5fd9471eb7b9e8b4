"""The profile window, open until it is closed."""
import zelprofiler01 as zel


class Planner:
    Title = "Host Planner"
    Path = "."


problem = zel.windows_problem()
if problem:
    raise SystemExit(f"{problem}.")
profiler = zel.ProfileControl()
profiler.SetClientApp(Planner())
profiler.ShowMainForm((36.40, -84.35, 30), (36.22, -84.12, 30))
print("The window is open.", flush=True)
if profiler.PFrmLoaded:
    raise SystemExit(zel.run())
