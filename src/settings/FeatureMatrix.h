#pragma once

#include <Vokit/FeatureGroup>
#include <Vokit/UserGroup>

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QPair>

#include <memory>

namespace vo {

class IPersistDestination;

/**
 * Which group of users may use which group of features.
 *
 * Rows are feature groups and columns are user groups, both addressed by identifier, so these run
 * from 0 to below the bounds given to the constructor. Every cell is allowed at the start. The
 * matrix enforces nothing; it answers questions.
 *
 * @code
 * vo::FeatureMatrix rights(1, 2);
 * rights.addUserGroup(new vo::UserGroup(0));
 * rights.addUserGroup(new vo::UserGroup(1));
 * rights.addFeatureGroup(new vo::FeatureGroup(0, "Playback", "Search and play recordings"));
 * rights.addFeatureToGroup(new vo::Feature(17), 0);
 * rights.load(&settings); // last: what was saved must fit the groups
 * rights.setAllowed(0, 1, false);
 * rights.isFeatureAllowed(17, 1); // false
 * if (rights.isModified())
 *     rights.save(&settings);
 * @endcode
 *
 * Bounds and groups are expected to agree. A cell outside the bounds is a mistake in the program:
 * it reads as not allowed and takes no value, so that stray memory never becomes a right.
 *
 * Nothing here locks or throws: one thread at a time.
 */
class VOKIT_EXPORT FeatureMatrix
{
public:
    /// The bounds, not negative. No groups yet.
    FeatureMatrix(int rows, int columns);
    /// Deletes the feature groups with their features, then the user groups; each kind in ascending
    /// order of the identifiers.
    virtual ~FeatureMatrix();

    /**
     * Writes the group "FeatureMatrix", and takes the matrix as not modified from here on. It does
     * not sync().
     *
     *     Rows      int         the number of feature groups that were added
     *     Columns   int         the number of user groups that were added
     *     Matrix    QByteArray  the cells from row 0, column 0 on, row by row, 32 to a number
     *
     * The first cell is the lowest bit of the first number; a number stands in decimal, a "+"
     * behind each. Two rows, 1 0 1 and 0 0 1, are the bits 100101 and give "37+"; 32 cells give one
     * number, 33 give two, and none give an empty text.
     *
     * @param destination must not be null
     */
    virtual void save(IPersistDestination *destination) const;

    /**
     * Reads what save() wrote.
     *
     * Other counts than those of the groups leave everything as it is, and write "Saved matrix not
     * compatible with current matrix." to the client's log, as an error. A text that is too short
     * leaves the remaining cells as they are; a piece of it that is no number reads as 0.
     *
     * Once all cells are passed, the matrix is not modified. A text that ends with the 32nd bit of
     * its last number ends the walk before that, be it on the last cell of all: isModified() then
     * stays true if a cell changed, or if it was true before. So a matrix of 32, 64, ... cells asks
     * to be saved again after a load() that changed it.
     *
     * @param destination must not be null
     */
    virtual void load(IPersistDestination *destination);

    bool isAllowed(int row, int column) const;
    /// Locked cells change, too. @see disableAbilityToChange
    void setAllowed(int row, int column, bool allowed);

    /// Takes the group over. One of the same identifier leaves undeleted: it is the caller's again.
    void addUserGroup(UserGroup *group);
    /// Takes the group over. One of the same identifier leaves undeleted: it is the caller's again.
    void addFeatureGroup(FeatureGroup *group);
    /// @param groupId must have been added. Ownership goes as in FeatureGroup::addFeature().
    void addFeatureToGroup(Feature *feature, int groupId);
    bool containsFeatureGroup(int groupId) const;

    /// True if any of the groups that hold the feature is allowed in that column. A feature in no
    /// group is not allowed.
    bool isFeatureAllowed(int featureId, int column) const;

    /// A note for whoever lets users edit the matrix: do not offer this cell. Nothing here heeds
    /// it.
    void disableAbilityToChange(int row, int column);
    /// Rows and columns, in the order of the calls to disableAbilityToChange().
    const QList<QPair<int, int>> &lockedCells() const { return m_locked; }

    /// The cue to save(): the cells differ from what was last saved or loaded.
    bool isModified() const { return m_modified; }

    /// The bounds given to the constructor, however many groups were added.
    int rows() const { return m_rows; }
    int columns() const { return m_columns; }

    FeatureMatrix(const FeatureMatrix &) = delete;
    FeatureMatrix &operator=(const FeatureMatrix &) = delete;

private:
    bool *cell(int row, int column) const;
    QByteArray cellsAsText() const;

    QMap<int, FeatureGroup *> m_featureGroups;
    QMap<int, UserGroup *> m_userGroups;
    std::unique_ptr<std::unique_ptr<bool[]>[]> m_allowed;
    QList<QPair<int, int>> m_locked;
    mutable bool m_modified;
    int m_rows;
    int m_columns;
};

} // namespace vo
