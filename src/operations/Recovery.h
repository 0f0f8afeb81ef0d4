#pragma once

namespace quorvik
{

class Asker;
class ParameterTable;
class RecoveryCopy;

/**
 * Offers the unsaved changes that an earlier run left behind. After a No the copy stays as "declined.Svx"
 * until the next No; one that cannot be read is set aside, and the user is told where.
 * @return True when the set was taken over: it is in the table, marked as modified, under its old name.
 */
bool OfferLeftover(RecoveryCopy &copy, ParameterTable &table, Asker &asker);

} // namespace quorvik
