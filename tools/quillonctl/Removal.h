#pragma once

/// Removal: the steps of `uninstall`: everything that the record of install names, each thing
/// before what it needs, and nothing else.
///
/// What has gone meanwhile is forgotten, what others use by now is left and named. Nothing to remove
/// is a success. Throws a Failure when something could not be removed; the record then still names
/// what is left, and another run goes on there.
class Removal {
public:
    static void Run();
};
